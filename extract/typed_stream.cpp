#include "extract/typed_stream.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvandel {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kHead = "\x04\x0Bstreamtyped\x81\xE8\x03"sv;

// Bytes that aren't a value themselves.
constexpr uint8_t kInt16 = 0x81;     // a little-endian number of 16 bits follows
constexpr uint8_t kInt32 = 0x82;     // of 32 bits
constexpr uint8_t kNew = 0x84;       // something that wasn't in the stream before follows
constexpr uint8_t kNothing = 0x85;   // no object, or no base class
constexpr uint8_t kEnd = 0x86;       // of an object
constexpr uint8_t kFirstRef = 0x92;  // reference to the first shared item; the next byte value to the second

constexpr std::string_view kObjectType = "@";
constexpr std::string_view kBytesType = "+";  // a length, and as many bytes

/// The items that later parts of a stream may refer to, in order of appearance. Limited, since only a few
/// precede the text.
template <typename Item>
class SharedItems {
 public:
  bool Add(const Item& item) {
    if (m_nCount == m_items.size()) return false;
    m_items[m_nCount++] = item;
    return true;
  }
  /// @return null for a reference to nothing.
  const Item* Find(uint8_t nReference) const {
    const size_t n = static_cast<size_t>(nReference) - kFirstRef;
    return nReference >= kFirstRef && n < m_nCount ? &m_items[n] : nullptr;
  }

 private:
  std::array<Item, 16> m_items{};
  size_t m_nCount = 0;
};

/// Reads a stream from its start. All functions return false, or an empty text, when the stream isn't as
/// expected; nothing can be read after that.
class StreamReader {
 public:
  explicit StreamReader(std::string_view stream) : m_rest(stream) {}

  bool Head() {
    if (m_rest.substr(0, kHead.size()) != kHead) return false;
    m_rest.remove_prefix(kHead.size());
    return true;
  }

  /// Reads the type of the next value.
  bool Type(std::string_view type) {
    std::string_view found;
    return SharedString(found) && found == type;
  }

  /// Reads the beginning of an object that appears for the first time, up to its first value.
  /// @param className name of its class, or of one of its base classes.
  bool BeginObject(std::string_view className) {
    if (Byte() != kNew || !m_objects.Add({})) return false;
    bool bFound = false;
    return Classes(className, bFound) && bFound;
  }

  bool CountedBytes(std::string_view& bytes) {
    size_t nLength = 0;
    return Number(nLength) && Take(nLength, bytes);
  }

  bool EndObject() { return Byte() == kEnd; }

 private:
  /// A class by its name, or an object, which has none.
  using Object = std::string_view;

  /// @return the next byte; kNothing, which is never expected alone, at the end of the stream.
  uint8_t Byte() {
    if (m_rest.empty()) return kNothing;
    const auto n = static_cast<uint8_t>(m_rest.front());
    m_rest.remove_prefix(1);
    return n;
  }

  bool Take(size_t nCount, std::string_view& bytes) {
    if (nCount > m_rest.size()) return false;
    bytes = m_rest.substr(0, nCount);
    m_rest.remove_prefix(nCount);
    return true;
  }

  /// Reads a number that can't be negative.
  bool Number(size_t& nNumber) {
    const uint8_t nFirst = Byte();
    nNumber = nFirst;
    if (nFirst < 0x80) return true;
    const size_t nBytes = nFirst == kInt16 ? 2 : nFirst == kInt32 ? 4 : 0;
    std::string_view bytes;
    if (nBytes == 0 || !Take(nBytes, bytes)) return false;
    nNumber = 0;
    for (size_t i = nBytes; i-- > 0;) nNumber = nNumber << 8 | static_cast<uint8_t>(bytes[i]);
    return true;
  }

  /// Reads the name of a type or class: a new one, or a reference to an earlier one.
  bool SharedString(std::string_view& text) {
    const uint8_t nFirst = Byte();
    if (nFirst == kNew) return CountedBytes(text) && m_strings.Add(text);
    const std::string_view* pText = m_strings.Find(nFirst);
    if (pText) text = *pText;
    return pText != nullptr;
  }

  /// Reads a class and its base classes, each of which is new except for the last.
  bool Classes(std::string_view wanted, bool& bFound) {
    for (;;) {
      const uint8_t nFirst = Byte();
      if (nFirst == kNothing) return true;
      if (nFirst != kNew) {
        const Object* pClass = m_objects.Find(nFirst);
        if (!pClass || pClass->empty()) return false;
        bFound = bFound || *pClass == wanted;
        return true;
      }
      std::string_view name;
      size_t nVersion = 0;
      if (!SharedString(name) || name.empty() || !Number(nVersion) || !m_objects.Add(name)) return false;
      bFound = bFound || name == wanted;
    }
  }

  std::string_view m_rest;
  SharedItems<std::string_view> m_strings;  // names of types and classes
  SharedItems<Object> m_objects;            // objects and classes
};

}  // namespace

std::string_view AttributedText(std::string_view stream) {
  StreamReader reader(stream);
  std::string_view text;
  const bool bSound = reader.Head() && reader.Type(kObjectType) && reader.BeginObject("NSAttributedString") &&
                      reader.Type(kObjectType) && reader.BeginObject("NSString") && reader.Type(kBytesType) &&
                      reader.CountedBytes(text) && reader.EndObject();
  return bSound ? text : std::string_view();
}

}  // namespace orvandel
