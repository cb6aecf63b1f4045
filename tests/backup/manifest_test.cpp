#include "backup/manifest.h"

#include <gmock/gmock.h>

#include "tests/backup/digest_reference.h"
#include "tests/backup/manifest_bytes.h"
#include "tests/support.h"

using namespace orvandel;
using manifest_bytes::Bytes;
using manifest_bytes::Entry;
using manifest_bytes::kHeader;
using manifest_bytes::kNoString;
using manifest_bytes::Text;
using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr uint16_t kDirectory = 0x41ED;

class BinaryManifest : public testing::Test {
 protected:
  /// Writes a manifest and appends its entries to the catalogue.
  int Read(const std::string& strBytes) {
    m_folder.Write("Manifest.mbdb", strBytes);
    return ReadFrom(m_folder.Path("Manifest.mbdb"));
  }

  int ReadFrom(const std::string& strPath) {
    return process_mbdb_file(QString::fromUtf8(strPath.c_str()).toStdU16String().c_str(), m_entries);
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const __MBDB_FILE__& entry : m_entries) names.push_back(entry.strFileName);
    return names;
  }

  TemporaryFolder m_folder;
  Catalogue m_entries;
};

struct ModeCase {
  uint16_t nMode;
  bool bKept;
};

void PrintTo(const ModeCase& one, std::ostream* pStream) {
  *pStream << one.nMode;
}

class ManifestMode : public BinaryManifest, public testing::WithParamInterface<ModeCase> {};

struct EmptyNameCase {
  const char* pszName;
  std::string strDomain;  // both in the bytes of the manifest
  std::string strPath;
};

void PrintTo(const EmptyNameCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class ManifestEmptyName : public BinaryManifest, public testing::WithParamInterface<EmptyNameCase> {};

class ManifestProperties : public BinaryManifest, public testing::WithParamInterface<int> {};

class ManifestMagic : public BinaryManifest, public testing::WithParamInterface<std::string> {};

}  // namespace

TEST_F(BinaryManifest, HeaderOnlyGivesNoEntries) {
  const int nStatus = Read(kHeader);

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(m_entries, IsEmpty());
}

TEST_F(BinaryManifest, BytesAfterTheMagicAreIgnored) {
  const int nStatus = Read("mbdb\xFF\xFE" + Bytes({"HomeDomain", "a"}));

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a"));
}

TEST_P(ManifestMagic, AnythingElseFailsAndLeavesTheEntriesAlone) {
  m_entries = {{"CameraRollDomain-old", "id"}};

  const int nStatus = Read(GetParam());

  EXPECT_EQ(87, nStatus);
  EXPECT_THAT(Names(), ElementsAre("CameraRollDomain-old"));
}

INSTANTIATE_TEST_SUITE_P(Manifest, ManifestMagic,
                         testing::Values("xbdb\5\0"s, "mxdb\5\0"s, "mbxb\5\0"s, "mbdx\5\0"s, "MBDB\5\0"s,
                                         "bdbm\5\0"s, "SQLite format 3\0"s, "mbd"s, ""s),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST_F(BinaryManifest, NullPathFails) {
  const int nStatus = process_mbdb_file(nullptr, m_entries);

  EXPECT_EQ(87, nStatus);
  EXPECT_THAT(m_entries, IsEmpty());
}

TEST_F(BinaryManifest, MissingFileFails) {
  const int nStatus = ReadFrom(m_folder.Path("missing"));

  EXPECT_EQ(87, nStatus);
  EXPECT_THAT(m_entries, IsEmpty());
}

TEST_F(BinaryManifest, PathBeyondAsciiIsFound) {
  m_folder.Write("T\xC3\xA9l\xC3\xA9phone/Manifest.mbdb", kHeader + Bytes({"HomeDomain", "a"}));

  const int nStatus = ReadFrom(m_folder.Path("T\xC3\xA9l\xC3\xA9phone/Manifest.mbdb"));

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a"));
}

TEST_F(BinaryManifest, EntryIsNamedByDomainAndPathAndIdentifiedByTheirDigest) {
  const int nStatus = Read(kHeader + Bytes({"HomeDomain", "Library/AddressBook/AddressBook.sqlitedb"}));

  EXPECT_EQ(0, nStatus);
  ASSERT_EQ(1u, m_entries.size());
  EXPECT_EQ("HomeDomain-Library/AddressBook/AddressBook.sqlitedb", m_entries[0].strFileName);
  EXPECT_EQ("31bb7ba8914766d4ba40d6dfb6113c8b614be442", m_entries[0].strFileId);
}

TEST_F(BinaryManifest, EntriesAreAppendedInFileOrder) {
  m_entries = {{"CameraRollDomain-old", "id"}};

  Read(kHeader + Bytes({"HomeDomain", "z"}) + Bytes({"AppDomain", "a"}) + Bytes({"HomeDomain", "b"}));

  EXPECT_THAT(Names(), ElementsAre("CameraRollDomain-old", "HomeDomain-z", "AppDomain-a", "HomeDomain-b"));
  EXPECT_EQ("id", m_entries[0].strFileId);
}

TEST_F(BinaryManifest, EqualNamesAreBothKept) {
  Read(kHeader + Bytes({"HomeDomain", "a"}) + Bytes({"HomeDomain", "a"}));

  ASSERT_THAT(Names(), ElementsAre("HomeDomain-a", "HomeDomain-a"));
  EXPECT_EQ(m_entries[0].strFileId, m_entries[1].strFileId);
}

TEST_P(ManifestMode, SaysWhetherTheEntryIsADirectory) {
  Read(kHeader + Bytes({"HomeDomain", "a", GetParam().nMode}) + Bytes({"HomeDomain", "next"}));

  if (GetParam().bKept) {
    EXPECT_THAT(Names(), ElementsAre("HomeDomain-a", "HomeDomain-next"));
  } else {
    EXPECT_THAT(Names(), ElementsAre("HomeDomain-next"));
  }
}

// Only the three top bits count: 5FFF is a directory, too, and a link (A1ED) is kept, although it may have no
// file.
INSTANTIATE_TEST_SUITE_P(Manifest, ManifestMode,
                         testing::Values(ModeCase{0x81A4, true}, ModeCase{0xA1ED, true},
                                         ModeCase{0x0000, true}, ModeCase{0x1000, true},
                                         ModeCase{0x2000, true}, ModeCase{0x3FFF, true},
                                         ModeCase{0x4000, false}, ModeCase{0x41ED, false},
                                         ModeCase{0x5FFF, false}, ModeCase{0x6000, true},
                                         ModeCase{0x7FFF, true}, ModeCase{0xC000, true},
                                         ModeCase{0xE000, true}, ModeCase{0xFFFF, true}),
                         [](const testing::TestParamInfo<ModeCase>& info) {
                           return "Mode" + QString::number(info.param.nMode, 16).toStdString();
                         });

TEST_P(ManifestEmptyName, DropsTheEntryWhateverItsMode) {
  const std::string strHead = GetParam().strDomain + GetParam().strPath + Text("") + Text("") + Text("");
  const std::string strFile = strHead + manifest_bytes::Block(0x81A4, 0);
  const std::string strDirectory = strHead + manifest_bytes::Block(kDirectory, 0);

  const int nStatus = Read(kHeader + strFile + strDirectory + Bytes({"HomeDomain", "next"}));

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-next"));
}

INSTANTIATE_TEST_SUITE_P(Manifest, ManifestEmptyName,
                         testing::Values(EmptyNameCase{"EmptyPath", Text("HomeDomain"), Text("")},
                                         EmptyNameCase{"MarkedPath", Text("HomeDomain"), kNoString},
                                         EmptyNameCase{"EmptyDomain", Text(""), Text("a")},
                                         EmptyNameCase{"MarkedDomain", kNoString, Text("a")},
                                         EmptyNameCase{"Neither", kNoString, kNoString}),
                         [](const testing::TestParamInfo<EmptyNameCase>& info) {
                           return info.param.pszName;
                         });

TEST_P(ManifestProperties, AreSkippedPairByPair) {
  Entry entry{"HomeDomain", "a"};
  for (int i = 0; i < GetParam(); ++i) entry.properties.emplace_back("name", "value" + std::to_string(i));

  const int nStatus = Read(kHeader + Bytes(entry) + Bytes({"HomeDomain", "next"}));

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a", "HomeDomain-next"));
}

INSTANTIATE_TEST_SUITE_P(Manifest, ManifestProperties, testing::Values(0, 1, 2, 127, 128, 255),
                         testing::PrintToStringParamName());

TEST_F(BinaryManifest, PropertyValuesMayBeBinaryOrEmpty) {
  const std::string strTwoPairs =
      Text("com.apple.backup") + Text("bplist00\0\xFF\xFF\0"s) + Text("") + kNoString;
  const std::string strHead = Text("HomeDomain") + Text("a") + Text("") + Text("") + Text("");

  const int nStatus = Read(kHeader + strHead + manifest_bytes::Block(0x81A4, 2) + strTwoPairs +
                           Bytes({"HomeDomain", "next"}));

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a", "HomeDomain-next"));
}

TEST_F(BinaryManifest, PropertiesOfADirectoryAreSkippedToo) {
  Entry directory{"HomeDomain", "Library", kDirectory};
  directory.properties = {{"name", "value"}};

  Read(kHeader + Bytes(directory) + Bytes({"HomeDomain", "next"}));

  EXPECT_THAT(Names(), ElementsAre("HomeDomain-next"));
}

TEST_F(BinaryManifest, LinkHashAndKeyAreSkipped) {
  Entry entry{"HomeDomain", "a"};
  entry.strLink = "/private/var/elsewhere";
  entry.strHash = std::string(20, '\x0A');
  entry.strKey = "\0\xFF\xFF\1key"s;

  Read(kHeader + Bytes(entry) + Bytes({"HomeDomain", "next"}));

  ASSERT_THAT(Names(), ElementsAre("HomeDomain-a", "HomeDomain-next"));
  EXPECT_EQ(StandardSha1("HomeDomain-a"), m_entries[0].strFileId);
}

TEST_F(BinaryManifest, MarkedStringsTakeTwoBytesInEveryField) {
  const std::string strEntry =
      Text("HomeDomain") + Text("a") + kNoString + kNoString + kNoString + manifest_bytes::Block(0x81A4, 0);

  const int nStatus = Read(kHeader + strEntry + Bytes({"HomeDomain", "next"}));

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a", "HomeDomain-next"));
}

TEST_F(BinaryManifest, PathOfLengthFF00IsReadWhole) {
  const std::string strPath(0xFF00, 'p');

  const int nStatus = Read(kHeader + Bytes({"HomeDomain", strPath}) + Bytes({"HomeDomain", "next"}));

  EXPECT_EQ(0, nStatus);
  ASSERT_EQ(2u, m_entries.size());
  EXPECT_TRUE("HomeDomain-" + strPath == m_entries[0].strFileName);
  EXPECT_EQ(StandardSha1("HomeDomain-" + strPath), m_entries[0].strFileId);
  EXPECT_EQ("HomeDomain-next", m_entries[1].strFileName);
}

TEST_F(BinaryManifest, NamesBeyondAsciiKeepTheirBytesInAnyLocale) {
  LocaleCodec codec("ISO-8859-1");

  Read(kHeader + Bytes({"HomeDomain", "caf\xC3\xA9\xE2\x82\xAC"}));

  EXPECT_THAT(Names(), ElementsAre("HomeDomain-caf\xC3\xA9\xE2\x82\xAC"));
}

// Deliberate: the device stores such a file under the standard SHA-1, so the catalogue entry has no file.
TEST_F(BinaryManifest, IdentifierOfANonAsciiNameIsNotTheStandardOne) {
  const std::string strName = "HomeDomain-caf\xC3\xA9.txt";

  Read(kHeader + Bytes({"HomeDomain", "caf\xC3\xA9.txt"}));

  ASSERT_EQ(1u, m_entries.size());
  EXPECT_EQ(DigestOf(strName), m_entries[0].strFileId);
  EXPECT_NE(StandardSha1(strName), m_entries[0].strFileId);
}

TEST_F(BinaryManifest, IdentifierOfANameCoversItUpToAZeroByte) {
  Read(kHeader + Bytes({"HomeDomain", "a\0b"s}));

  ASSERT_EQ(1u, m_entries.size());
  EXPECT_EQ("HomeDomain-a\0b"s, m_entries[0].strFileName);
  EXPECT_EQ(StandardSha1("HomeDomain-a"), m_entries[0].strFileId);
}

TEST_F(BinaryManifest, TruncatedFileKeepsTheCompleteEntries) {
  Entry first{"HomeDomain", "first"};
  first.properties = {{"name", "value"}};
  Entry second{"HomeDomain", "second"};
  second.strHash = "\x0A\xFF";
  const std::vector<std::string> entries = {Bytes(first), Bytes(second), Bytes({"HomeDomain", "third"})};
  const std::vector<std::string> names = {"HomeDomain-first", "HomeDomain-second", "HomeDomain-third"};
  const std::string strAll = kHeader + entries[0] + entries[1] + entries[2];

  for (size_t nSize = 4; nSize <= strAll.size(); ++nSize) {
    m_entries.clear();
    size_t nWhole = 0;
    for (size_t nEnd = 6; nWhole < 3 && nEnd + entries[nWhole].size() <= nSize; ++nWhole) {
      nEnd += entries[nWhole].size();
    }

    const int nStatus = Read(strAll.substr(0, nSize));

    EXPECT_EQ(0, nStatus) << "cut at " << nSize;
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + nWhole), Names()) << "cut at " << nSize;
  }
}

TEST_F(BinaryManifest, GarbageAfterTheEntriesIsIgnored) {
  const int nStatus = Read(kHeader + Bytes({"HomeDomain", "a"}) + std::string(30, '\xFE'));

  EXPECT_EQ(0, nStatus);
  EXPECT_THAT(Names(), ElementsAre("HomeDomain-a"));
}
