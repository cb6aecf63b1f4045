#include "decrypt/binary_list.h"

#include <gmock/gmock.h>

#include <QString>
#include <functional>

#include "decrypt/archived_file.h"
#include "sample/encryption.h"
#include "tests/decrypt/cryptography.h"

using namespace orvandel;
using testing::IsEmpty;
using Type = BinaryList::Type;

namespace {

const std::string kKey(44, 'k');
constexpr size_t kTrailer = 32;

std::string BigEndian(uint64_t nValue, size_t nBytes) {
  std::string strBytes(nBytes, '\0');
  for (size_t i = nBytes; i-- > 0; nValue >>= 8) strBytes[i] = static_cast<char>(nValue);
  return strBytes;
}

/// A marker with its count, which follows as a number of nWidth bytes when it is large.
std::string Marker(int nHigh, size_t nCount, int nWidth = 0) {
  if (nCount < 15 && nWidth == 0)
    return std::string(1, static_cast<char>(nHigh << 4 | static_cast<int>(nCount)));
  const int nPower = nWidth == 8 ? 3 : nWidth == 4 ? 2 : nWidth == 2 || nCount > 0xFF ? 1 : 0;
  return std::string{static_cast<char>(nHigh << 4 | 0xF), static_cast<char>(0x10 | nPower)} +
         BigEndian(nCount, size_t{1} << nPower);
}

std::string Text(const std::string& strText) {
  return Marker(5, strText.size()) + strText;
}
std::string WideText(const std::u16string& wstrText) {
  std::string strBytes = Marker(6, wstrText.size());
  for (const char16_t ch : wstrText) strBytes += BigEndian(ch, 2);
  return strBytes;
}
std::string Data(const std::string& strBytes) {
  return Marker(4, strBytes.size()) + strBytes;
}
std::string Number(uint64_t nValue, size_t nBytes) {
  const char nPower = nBytes == 16 ? 4 : nBytes == 8 ? 3 : nBytes == 4 ? 2 : nBytes == 2 ? 1 : 0;
  return static_cast<char>(0x10 | nPower) + std::string(nBytes == 16 ? 8 : 0, '\0') +
         BigEndian(nValue, nBytes == 16 ? 8 : nBytes);
}
std::string Reference(uint64_t nValue, size_t nBytes = 1) {
  return static_cast<char>(0x80 | (nBytes - 1)) + BigEndian(nValue, nBytes);
}

/// Builds a list byte by byte, valid or not. Every field may be changed before Bytes.
struct ListBytes {
  std::vector<std::string> objects;
  size_t nOffsetSize = 2, nNumberSize = 1;
  uint64_t nRoot = 0;
  std::function<void(std::vector<uint64_t>& offsets, uint64_t& nObjects, uint64_t& nTable)> change;

  /// @return the number of the object.
  uint64_t Add(const std::string& strBytes) {
    objects.push_back(strBytes);
    return objects.size() - 1;
  }
  uint64_t AddArray(const std::vector<uint64_t>& elements) {
    std::string strBytes = Marker(0xA, elements.size());
    for (const uint64_t nElement : elements) strBytes += BigEndian(nElement, nNumberSize);
    return Add(strBytes);
  }
  uint64_t AddDictionary(const std::vector<std::pair<std::string, uint64_t>>& members) {
    std::string strKeys, strValues;
    for (const auto& [strKey, nValue] : members) {
      strKeys += BigEndian(Add(Text(strKey)), nNumberSize);
      strValues += BigEndian(nValue, nNumberSize);
    }
    return Add(Marker(0xD, members.size()) + strKeys + strValues);
  }

  std::string Bytes() const {
    std::string strBytes = "bplist00";
    std::vector<uint64_t> offsets;
    for (const std::string& strObject : objects) {
      offsets.push_back(strBytes.size());
      strBytes += strObject;
    }
    uint64_t nObjects = objects.size(), nTable = strBytes.size();
    if (change) change(offsets, nObjects, nTable);
    for (const uint64_t nOffset : offsets) strBytes += BigEndian(nOffset, nOffsetSize);
    return strBytes + std::string(6, '\0') + static_cast<char>(nOffsetSize) + static_cast<char>(nNumberSize) +
           BigEndian(nObjects, 8) + BigEndian(nRoot, 8) + BigEndian(nTable, 8);
  }
};

/// A copy of the exact length, so that sanitizers detect reads beyond the end.
class ExactBytes {
 public:
  explicit ExactBytes(const std::string& strBytes) : m_bytes(strBytes.begin(), strBytes.end()) {
    m_bytes.shrink_to_fit();
  }
  std::optional<BinaryList> Open() const { return BinaryList::Open(m_bytes.data(), m_bytes.size()); }
  ArchivedFile Read() const { return ReadArchivedFile(m_bytes.data(), m_bytes.size()); }

 private:
  std::vector<char> m_bytes;
};

/// A record whose fields are the given objects. @param fields makes them.
ArchivedFile ReadRecord(
    const std::function<std::vector<std::pair<std::string, uint64_t>>(ListBytes& list)>& fields,
    const std::vector<std::string>& more = {}, size_t nNumberSize = 1) {
  ListBytes list;
  list.nNumberSize = nNumberSize;
  const uint64_t nFile = list.AddDictionary(fields(list));
  std::vector<uint64_t> objects = {list.Add(Text("$null")), nFile};
  for (const std::string& strObject : more) objects.push_back(list.Add(strObject));
  const uint64_t nTop = list.AddDictionary({{"root", list.Add(Reference(1))}});
  list.nRoot = list.AddDictionary({{"$objects", list.AddArray(objects)}, {"$top", nTop}});
  return ExactBytes(list.Bytes()).Read();
}

std::string KeyOf(const ArchivedFile& file) {
  return std::string(file.wrappedKey.begin(), file.wrappedKey.end());
}

std::string SampleRecord(bool bNested) {
  return BackupKeys::record(0x81A4, 77, QByteArray(kKey.data(), 44), bNested).toStdString();
}

/// Reads all that an object may have.
void Visit(const BinaryList& list, const BinaryList::Object& object) {
  list.DataOf(object);
  list.TextOf(object);
  list.Member(object, "no such member");
  for (uint64_t i = 0; i < 10; ++i) list.Element(object, i);
}

void VisitAll(const ExactBytes& bytes) {
  bytes.Read();
  const auto list = bytes.Open();
  if (!list) return;
  Visit(*list, list->Root());
  for (uint64_t i = 0; i < 40; ++i) Visit(*list, list->At(i));
  for (const uint64_t i : {uint64_t{1} << 32, UINT64_MAX}) Visit(*list, list->At(i));
}

}  // namespace

TEST(BinaryListOfBytes, SurvivesTruncationAnywhere) {
  for (const bool bNested : {true, false}) {
    const std::string strWhole = SampleRecord(bNested);
    ASSERT_TRUE(ExactBytes(strWhole).Read().bWhole);
    for (size_t nSize = 0; nSize < strWhole.size(); ++nSize) {
      const ExactBytes cut(strWhole.substr(0, nSize));

      VisitAll(cut);
      EXPECT_FALSE(cut.Read().bWhole) << nSize;
      // With the trailer at its new end, the objects are what is cut.
      if (nSize > kTrailer)
        VisitAll(
            ExactBytes(strWhole.substr(0, nSize - kTrailer) + strWhole.substr(strWhole.size() - kTrailer)));
    }
  }
}

TEST(BinaryListOfBytes, SurvivesAnyOtherByteAnywhere) {
  for (const bool bNested : {true, false}) {
    const std::string strWhole = SampleRecord(bNested);
    for (size_t nAt = 0; nAt < strWhole.size(); ++nAt) {
      for (const int nByte : {0x00, 0xFF, ~strWhole[nAt] & 0xFF, strWhole[nAt] ^ 1, strWhole[nAt] ^ 0x10}) {
        std::string strChanged = strWhole;
        strChanged[nAt] = static_cast<char>(nByte);

        VisitAll(ExactBytes(strChanged));
      }
    }
  }
}

TEST(BinaryListOfBytes, NeverTakesAnEncryptedFileForAPlainOneByAKeyThatIsCut) {
  const std::string strWhole = SampleRecord(true);
  const size_t nKey = strWhole.find(kKey);
  ASSERT_NE(std::string::npos, nKey);
  for (const char nMarker : {'\x4F', '\x40', '\x00', '\x5F', '\xFF'}) {
    std::string strChanged = strWhole;
    strChanged[nKey - 3] = nMarker;

    const ArchivedFile file = ExactBytes(strChanged).Read();

    EXPECT_EQ(nMarker == '\x4F', file.bWhole) << static_cast<int>(nMarker);
  }
}

TEST(BinaryListOfBytes, IsRefusedWithAnInvalidTrailer) {
  struct {
    const char* pszName;
    std::function<void(ListBytes&)> change;
  } const cases[] = {
      {"no width of offsets", [](ListBytes& list) { list.nOffsetSize = 0; }},
      {"wide offsets", [](ListBytes& list) { list.nOffsetSize = 9; }},
      {"no width of numbers", [](ListBytes& list) { list.nNumberSize = 0; }},
      {"wide numbers", [](ListBytes& list) { list.nNumberSize = 255; }},
      {"one object too many",
       [](ListBytes& list) { list.change = [](auto&, uint64_t& nObjects, auto&) { ++nObjects; }; }},
      {"huge count",
       [](ListBytes& list) {
         list.change = [](auto&, uint64_t& nObjects, auto&) { nObjects = UINT64_MAX; };
       }},
      {"count that overflows",
       [](ListBytes& list) {
         list.change = [](auto&, uint64_t& nObjects, auto&) { nObjects = (uint64_t{1} << 63) + 1; };
       }},
      {"table beyond the end",
       [](ListBytes& list) { list.change = [](auto&, auto&, uint64_t& nTable) { nTable += 40; }; }},
      {"table at the highest offset",
       [](ListBytes& list) { list.change = [](auto&, auto&, uint64_t& nTable) { nTable = UINT64_MAX; }; }},
      {"table in the head",
       [](ListBytes& list) { list.change = [](auto&, auto&, uint64_t& nTable) { nTable = 7; }; }},
  };
  for (const auto& test : cases) {
    ListBytes list;
    list.Add(Number(1, 1));
    test.change(list);

    EXPECT_FALSE(ExactBytes(list.Bytes()).Open()) << test.pszName;
    EXPECT_FALSE(ExactBytes(list.Bytes()).Read().bWhole) << test.pszName;
  }
}

TEST(BinaryListOfBytes, HasNoObjectAtAnOffsetOutsideItsObjects) {
  for (const uint64_t nOffset : {uint64_t{0}, uint64_t{7}, uint64_t{10}, uint64_t{30}, uint64_t{0xFFFF}}) {
    ListBytes list;
    list.Add(Number(1, 1));
    list.change = [&](std::vector<uint64_t>& offsets, auto&, auto&) { offsets[0] = nOffset; };
    const ExactBytes bytes(list.Bytes());

    const auto opened = bytes.Open();

    ASSERT_TRUE(opened);
    EXPECT_EQ(Type::None, opened->Root().type) << nOffset;
  }
}

TEST(BinaryListOfBytes, HasNoObjectWithAHugeCount) {
  for (const int nKind : {0x4, 0x5, 0x6, 0xA, 0xD}) {
    for (const size_t nCount :
         {size_t{100}, size_t{0xFFFFFFFF}, SIZE_MAX, SIZE_MAX / 2 + 1, SIZE_MAX / 4 + 1}) {
      ListBytes list;
      list.nNumberSize = 4;
      list.Add(Marker(nKind, nCount, 8) + "0123456789");
      const ExactBytes bytes(list.Bytes());

      const auto opened = bytes.Open();

      ASSERT_TRUE(opened);
      EXPECT_EQ(Type::None, opened->Root().type) << nKind << " " << nCount;
    }
  }
}

TEST(BinaryListOfBytes, HasNoObjectThatEndsWithinItsCount) {
  for (const std::string& strObject :
       {std::string("\x4F"), std::string("\x5F\x10"), std::string("\x6F\x13\x01"),
        std::string("\xAF\x14") + std::string(16, '\0'), std::string("\xDF\x20\x01"),
        std::string("\x13\x01\x02", 3), std::string("\x15"), std::string("\x8F\x01")}) {
    ListBytes list;
    list.Add(strObject);
    const ExactBytes bytes(list.Bytes());

    EXPECT_EQ(Type::None, bytes.Open()->Root().type) << testing::PrintToString(strObject);
  }
}

TEST(BinaryListOfBytes, ReadsCountsOfEachWidth) {
  for (const int nWidth : {1, 2, 4, 8}) {
    ListBytes list;
    list.Add(Marker(4, 20, nWidth) + std::string(20, 'x'));
    const ExactBytes bytes(list.Bytes());
    const auto opened = bytes.Open();

    EXPECT_EQ(ToBytes(std::string(20, 'x')), opened->DataOf(opened->Root())) << nWidth;
  }
}

TEST(BinaryListOfBytes, ReadsOffsetsAndReferencesOfEachWidth) {
  for (size_t nWidth = 1; nWidth <= 8; ++nWidth) {
    ListBytes list;
    list.nOffsetSize = list.nNumberSize = nWidth;
    list.nRoot = list.AddArray({1});
    list.Add(Text("text"));
    const ExactBytes bytes(list.Bytes());
    const auto opened = bytes.Open();

    EXPECT_EQ("text", opened->TextOf(opened->Element(opened->Root(), 0))) << nWidth;
    EXPECT_EQ(Type::None, opened->Element(opened->Root(), 1).type);
    EXPECT_EQ(Type::None, opened->Element(opened->Root(), UINT64_MAX).type);
  }
}

TEST(BinaryListOfBytes, ThatRefersToItselfIsReadOnce) {
  ListBytes list;
  list.nRoot = list.AddDictionary({{"$objects", 1}, {"$top", 1}});
  ASSERT_EQ(2u, list.nRoot);
  list.objects[1] = Marker(0xA, 1) + BigEndian(1, 1);
  const ExactBytes bytes(list.Bytes());

  EXPECT_FALSE(bytes.Read().bWhole);
  VisitAll(bytes);
}

TEST(BinaryRecord, SurvivesReferencesToItself) {
  for (const std::string& strTarget : {Reference(0), Reference(1), Reference(2), Reference(99)}) {
    const ArchivedFile file = ReadRecord(
        [&](ListBytes& list) -> std::vector<std::pair<std::string, uint64_t>> {
          return {{"EncryptionKey", list.Add(Reference(2))}, {"Size", list.Add(Number(77, 1))}};
        },
        {strTarget});

    EXPECT_EQ(77u, file.nSize);
    EXPECT_FALSE(file.bWhole) << "a key that isn't data";
  }
}

TEST(BinaryRecord, HasItsKeyInlineOrByReference) {
  using Members = std::vector<std::pair<std::string, uint64_t>>;
  const ArchivedFile inlineKey = ReadRecord([](ListBytes& list) -> Members {
    return {{"EncryptionKey", list.Add(Data(kKey))}};
  });
  const ArchivedFile referredKey = ReadRecord(
      [](ListBytes& list) -> Members {
        return {{"EncryptionKey", list.Add(Reference(2))}};
      },
      {Data(kKey)});
  const ArchivedFile inlineObject = ReadRecord([](ListBytes& list) -> Members {
    return {{"EncryptionKey", list.AddDictionary({{"NS.data", list.Add(Data(kKey))}})}};
  });
  const ArchivedFile objectWithReference = ReadRecord(
      [](ListBytes& list) -> Members {
        return {{"EncryptionKey", list.AddDictionary({{"NS.data", list.Add(Reference(2))}})}};
      },
      {Data(kKey)});

  for (const ArchivedFile* pFile : {&inlineKey, &referredKey, &inlineObject, &objectWithReference}) {
    EXPECT_EQ(kKey, KeyOf(*pFile));
    EXPECT_TRUE(pFile->bWhole);
  }
}

TEST(BinaryRecord, HasNumbersOfEachWidth) {
  for (const size_t nWidth : {1, 2, 4, 8, 16}) {
    const uint64_t nValue = nWidth >= 8   ? 0x123456789ABCDEF0
                            : nWidth == 4 ? 0x81A40001
                            : nWidth == 2 ? 0x81A4
                                          : 0x81;
    const ArchivedFile file = ReadRecord(
        [&](ListBytes& list) -> std::vector<std::pair<std::string, uint64_t>> {
          return {{"Size", list.Add(Number(nValue, nWidth))},
                  {"Mode", list.Add(Reference(2))},
                  {"LastModified", list.Add(Number(nValue, nWidth))}};
        },
        {Number(nValue, nWidth)});

    EXPECT_EQ(nValue, file.nSize) << nWidth;
    EXPECT_EQ(static_cast<uint32_t>(nValue), file.nMode) << nWidth;
    EXPECT_EQ(static_cast<int64_t>(nValue), file.nModified) << nWidth;
    EXPECT_TRUE(file.bWhole);
  }
}

TEST(BinaryRecord, HasTheTargetOfALinkInEitherEncoding) {
  const std::pair<std::string, std::string> cases[] = {
      {Text("../a/b"), "../a/b"},
      {WideText(u"Gr\u00FC\u00DFe/\u6587/\U0001F600"), "Gr\u00FC\u00DFe/\u6587/\U0001F600"},
      {WideText(std::u16string(300, u'\u00E4')),
       [] {
         std::string strText;
         for (int i = 0; i < 300; ++i) strText += "\u00E4";
         return strText;
       }()},
      {Text("$null"), "$null"},
      {Data("bytes"), ""},
  };
  for (const auto& [strObject, strExpected] : cases) {
    const ArchivedFile file = ReadRecord(
        [](ListBytes& list) -> std::vector<std::pair<std::string, uint64_t>> {
          return {{"Target", list.Add(Reference(2))}};
        },
        {strObject});

    EXPECT_EQ(strExpected, file.strTarget);
    EXPECT_TRUE(file.bWhole);
  }
}

TEST(BinaryRecord, TargetWithHalfACharacterIsStillText) {
  const ArchivedFile file = ReadRecord([](ListBytes& list) -> std::vector<std::pair<std::string, uint64_t>> {
    return {{"Target", list.Add(WideText(std::u16string{u'a', char16_t{0xD83D}, u'b'}))}};
  });

  EXPECT_TRUE(QString::fromUtf8(file.strTarget.c_str()).isValidUtf16());
  EXPECT_EQ('a', file.strTarget.front());
  EXPECT_EQ('b', file.strTarget.back());
}
