#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "decrypt/crypto.h"

namespace orvandel {

/// A binary property list that is read in place, object by object. Documented in docs/encrypted-backup.md.
///
/// A manifest has one for each file, so a tree of each takes too long to build. Refers to the caller's bytes.
/// All offsets are checked when they are used; objects beyond the end don't exist.
class BinaryList {
 public:
  enum class Type { None, Number, Data, Text, WideText, Reference, Array, Dictionary };

  /// One object.
  struct Object {
    Type type = Type::None;  ///< None for a missing object, or one of another type
    uint64_t nValue = 0;     ///< of a number or a reference
    size_t nCount = 0;       ///< bytes of data, characters of a text, elements of an array or dictionary
    size_t nOffset = 0;      ///< of its content
  };

  /// @return nullopt when it isn't a binary property list.
  static std::optional<BinaryList> Open(const void* pData, size_t nSize);

  Object Root() const { return At(m_nRoot); }
  /// The object with the given number.
  Object At(uint64_t nNumber) const;
  /// The value of a dictionary's key. @param pszKey at most 14 ASCII characters.
  Object Member(const Object& dictionary, const char* pszKey) const;
  /// True when a dictionary has the key, whatever its value.
  bool HasMember(const Object& dictionary, const char* pszKey) const;
  Object Element(const Object& array, uint64_t nPlace) const;

  Bytes DataOf(const Object& data) const;
  /// UTF-8; empty for anything but a text.
  std::string TextOf(const Object& text) const;

 private:
  BinaryList() = default;
  uint64_t Number(size_t nOffset, size_t nBytes) const;
  /// The place of a key in a dictionary; nullopt when there is none.
  std::optional<size_t> PlaceOf(const Object& dictionary, const char* pszKey) const;
  /// True for a text with these characters, at most 14.
  bool IsText(uint64_t nNumber, const char* pszText, size_t nLength) const;

  const unsigned char* m_pData = nullptr;
  size_t m_nEnd = 0;  // of the objects
  size_t m_nTable = 0, m_nOffsetSize = 0, m_nNumberSize = 0;
  uint64_t m_nObjects = 0, m_nRoot = 0;
};

}  // namespace orvandel
