#include <gmock/gmock.h>

#include "backup/manifest.h"
#include "tests/backup/manifest_bytes.h"
#include "tests/support.h"

using namespace orvandel;
using manifest_bytes::kNoString;
using manifest_bytes::Text;
using namespace std::string_literals;
using testing::ElementsAre;

namespace {

struct StringCase {
  const char* pszName;
  std::string strData;
  long long nOffset;
  std::string strText;
  std::string strHash;
  long long nOffsetBehind;
};

class ManifestString : public testing::Test {
 protected:
  /// A copy in an allocation of exactly its size, so that sanitizers detect reads beyond the end.
  static std::vector<unsigned char> Copy(const std::string& strData) {
    return {strData.begin(), strData.end()};
  }
};

/// The same as read by the manifest's reader: domain and path form the name, other fields are skipped.
struct FieldCase {
  const char* pszName;
  std::string strData;   // bytes of the field, including its length
  std::string strValue;  // expected value
};

class ManifestField : public testing::Test {
 protected:
  /// The names that the reader forms from the fields of one entry, and from an ordinary entry after it.
  std::vector<std::string> Names(const std::vector<std::string>& fields,
                                 const std::string& strProperties = {}, size_t nProperties = 0) {
    std::string strBytes = manifest_bytes::kHeader;
    for (const std::string& strField : fields) strBytes += strField;
    strBytes += manifest_bytes::Block(0x81A4, nProperties) + strProperties;
    m_folder.Write("Manifest.mbdb", strBytes + manifest_bytes::Bytes({"HomeDomain", "next"}));
    Catalogue entries;
    const int nStatus = process_mbdb_file(
        QString::fromUtf8(m_folder.Path("Manifest.mbdb").c_str()).toStdU16String().c_str(), entries);
    EXPECT_EQ(0, nStatus);
    std::vector<std::string> names;
    for (const __MBDB_FILE__& entry : entries) names.push_back(entry.strFileName);
    return names;
  }

  /// The entry, if its field isn't empty, and the next one.
  static testing::Matcher<std::vector<std::string>> Expected(const FieldCase& field,
                                                             const std::string& strName) {
    if (field.strValue.empty()) return ElementsAre("HomeDomain-next");
    return ElementsAre(strName, "HomeDomain-next");
  }

  TemporaryFolder m_folder;
};

const unsigned char* Data(const std::string& strData) {
  return reinterpret_cast<const unsigned char*>(strData.data());
}

const StringCase kStrings[] = {{"OrdinaryText", "\0\3abc"s, 0, "abc", "616263", 5},
                               {"TextInTheMiddle", "xx\0\2abyy"s, 2, "ab", "6162", 6},
                               {"LengthZero", "\0\0ab"s, 0, "", "", 2},
                               {"EmptyMarkTakesTwoBytes", "\xFF\xFF\0\1a"s, 0, "", "", 2},
                               {"BytesBelow16GiveOneDigit", "\0\2\x0A\xFF"s, 0, "\x0A\xFF", "aff", 4},
                               {"ZeroByteIsPartOfTheText", "\0\3a\0b"s, 0, "a\0b"s, "61062", 5},
                               {"TopBitsStayAsTheyAre", "\0\2\xC3\xA9"s, 0, "\xC3\xA9", "c3a9", 4},
                               {"FullBytesAreTextBehindALength", "\0\2\xFF\xFF"s, 0, "\xFF\xFF", "ffff", 4},
                               {"TextOneByteShort", "\0\3ab"s, 0, "", "", 5},
                               {"LengthCutInTwo", "ab\0"s, 2, "", "", 4},
                               {"EmptyMarkCutInTwo", "ab\xFF"s, 2, "", "", 4},
                               {"NothingLeft", "ab", 2, "", "", 3}};

const FieldCase kFields[] = {
    {"OrdinaryText", "\0\3abc"s, "abc"},
    {"LengthZero", "\0\0"s, ""},
    {"EmptyMarkTakesTwoBytes", "\xFF\xFF", ""},
    {"BytesBelow16", "\0\2\x0A\xFF"s, "\x0A\xFF"},
    {"ZeroByteIsPartOfTheText", "\0\3a\0b"s, "a\0b"s},
    {"TopBitsStayAsTheyAre", "\0\2\xC3\xA9"s, "\xC3\xA9"},
    {"FullBytesAreTextBehindALength", "\0\2\xFF\xFF"s, "\xFF\xFF"},
    {"LengthWithFFInItsLowByte", Text(std::string(0x00FF, 'p')), std::string(255, 'p')},
    {"LengthFF00IsAnOrdinaryOne", Text(std::string(0xFF00, 'p')), std::string(0xFF00, 'p')},
    {"LengthFFFEIsTheLongest", Text(std::string(0xFFFE, 'p')), std::string(0xFFFE, 'p')}};

}  // namespace

TEST_F(ManifestString, IsReadAsTextByItsLength) {
  for (const StringCase& row : kStrings) {
    SCOPED_TRACE(row.pszName);
    const std::vector<unsigned char> data = Copy(row.strData);
    long long nOffset = row.nOffset;

    const std::string strText = getstring(data.data(), &nOffset, static_cast<long long>(data.size()));

    EXPECT_EQ(row.strText, strText);
    EXPECT_EQ(row.nOffsetBehind, nOffset);
  }
}

TEST_F(ManifestString, IsReadAsHashByItsLength) {
  for (const StringCase& row : kStrings) {
    SCOPED_TRACE(row.pszName);
    const std::vector<unsigned char> data = Copy(row.strData);
    long long nOffset = row.nOffset;

    const std::string strHash = gethash(data.data(), &nOffset, static_cast<long long>(data.size()));

    EXPECT_EQ(row.strHash, strHash);
    EXPECT_EQ(row.nOffsetBehind, nOffset);
  }
}

TEST_F(ManifestField, OfADomainIsReadByItsLength) {
  for (const FieldCase& row : kFields) {
    SCOPED_TRACE(row.pszName);
    const std::vector<std::string> names =
        Names({row.strData, Text("path"), kNoString, kNoString, kNoString});

    EXPECT_THAT(names, Expected(row, row.strValue + "-path"));
  }
}

TEST_F(ManifestField, OfAPathIsReadByItsLength) {
  for (const FieldCase& row : kFields) {
    SCOPED_TRACE(row.pszName);
    const std::vector<std::string> names =
        Names({Text("Domain"), row.strData, kNoString, kNoString, kNoString});

    EXPECT_THAT(names, Expected(row, "Domain-" + row.strValue));
  }
}

TEST_F(ManifestField, OfEachOtherKindIsSkippedByItsLength) {
  for (const FieldCase& row : kFields) {
    SCOPED_TRACE(row.pszName);
    for (size_t nField = 2; nField < 5; ++nField) {
      std::vector<std::string> fields = {Text("Domain"), Text("path"), kNoString, kNoString, kNoString};
      fields[nField] = row.strData;

      const std::vector<std::string> names = Names(fields);

      EXPECT_THAT(names, ElementsAre("Domain-path", "HomeDomain-next")) << "field " << nField;
    }
  }
}

TEST_F(ManifestField, OfAPropertyIsSkippedByItsLength) {
  for (const FieldCase& row : kFields) {
    SCOPED_TRACE(row.pszName);
    const std::vector<std::string> names =
        Names({Text("Domain"), Text("path"), kNoString, kNoString, kNoString},
              row.strData + Text("value") + Text("name") + row.strData, 2);

    EXPECT_THAT(names, ElementsAre("Domain-path", "HomeDomain-next"));
  }
}

TEST(ManifestLongString, LengthFF00IsAnOrdinaryOne) {
  const std::string strText(0xFF00, 'p');
  const std::string strData = manifest_bytes::Text(strText) + "tail";
  long long nOffset = 0;

  const std::string strRead = getstring(Data(strData), &nOffset, static_cast<long long>(strData.size()));

  EXPECT_TRUE(strText == strRead) << strRead.size() << " bytes read";
  EXPECT_EQ(65282, nOffset);
}

TEST(ManifestLongString, LengthFFFEIsTheLongest) {
  const std::string strText(0xFFFE, 'p');
  const std::string strData = manifest_bytes::Text(strText);
  long long nOffset = 0;

  const std::string strRead = getstring(Data(strData), &nOffset, static_cast<long long>(strData.size()));

  EXPECT_TRUE(strText == strRead) << strRead.size() << " bytes read";
  EXPECT_EQ(65536, nOffset);
}

TEST(ManifestLongString, LengthWithFFInItsLowByteIsAnOrdinaryOne) {
  const std::string strData = manifest_bytes::Text(std::string(0x00FF, 'p'));
  long long nOffset = 0;

  const std::string strRead = getstring(Data(strData), &nOffset, static_cast<long long>(strData.size()));

  EXPECT_EQ(std::string(255, 'p'), strRead);
  EXPECT_EQ(257, nOffset);
}

TEST(ManifestStringNull, NullDataGivesAnEmptyTextAndStays) {
  long long nOffset = 3;

  const std::string strText = getstring(nullptr, &nOffset, 8);
  const std::string strHash = gethash(nullptr, &nOffset, 8);

  EXPECT_EQ("", strText);
  EXPECT_EQ("", strHash);
  EXPECT_EQ(3, nOffset);
}

TEST(ManifestStringNull, NullOffsetGivesAnEmptyText) {
  const std::string strData = "\0\3abc"s;

  const std::string strText = getstring(Data(strData), nullptr, 5);
  const std::string strHash = gethash(Data(strData), nullptr, 5);

  EXPECT_EQ("", strText);
  EXPECT_EQ("", strHash);
}
