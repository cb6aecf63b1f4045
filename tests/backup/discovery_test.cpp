#include "backup/discovery.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const char kProbe[] = "31bb7ba8914766d4ba40d6dfb6113c8b614be442";

class FolderWalk : public testing::Test {
 protected:
  void SetUp() override {
    m_folder.Write("c.txt", "");
    m_folder.Write("B/inner.txt", "");
    m_folder.Write("a.txt", "");
    m_folder.Write("D.txt", "");
    m_folder.MakeFolder("e/deep");
    m_folder.Write(".hidden", "");
    m_folder.MakeFolder(".hidden folder");
  }

  std::string Path(const std::string& strName) const { return m_folder.Path(strName); }

  TemporaryFolder m_folder;
};

struct ProbeCase {
  const char* pszName;
  std::vector<std::string> files;  // a name, or a name, "=" and content
  bool bEncrypted;
};

void PrintTo(const ProbeCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class Probe : public testing::TestWithParam<ProbeCase> {};

std::string Flat(const std::string& strRest) {
  return kProbe + strRest;
}
std::string TwoLevel(const std::string& strRest) {
  return std::string("31/") + kProbe + strRest;
}

}  // namespace

TEST_F(FolderWalk, SubFoldersComeInReverseOfAListingThatIgnoresCase) {
  std::vector<std::string> folders;

  const int nResult = TraverseSubFolders(m_folder.Path(), folders);

  EXPECT_EQ(1, nResult);
  EXPECT_THAT(folders, ElementsAre(Path("e"), Path("B")));
}

TEST_F(FolderWalk, FilesComeInReverseOfAListingThatIgnoresCase) {
  std::vector<std::string> files;

  const int nResult = TraverseFiles(m_folder.Path(), files);

  EXPECT_EQ(1, nResult);
  EXPECT_THAT(files, ElementsAre(Path("D.txt"), Path("c.txt"), Path("a.txt")));
}

TEST_F(FolderWalk, FilesAndFoldersComeInTheOrderOfTheListing) {
  std::vector<std::string> entries;

  const int nResult = TraverseFolderAndFile(m_folder.Path(), entries);

  EXPECT_EQ(1, nResult);
  EXPECT_THAT(entries, ElementsAre(Path("a.txt"), Path("B"), Path("c.txt"), Path("D.txt"), Path("e")));
}

TEST_F(FolderWalk, OnlyFilesDirectlyInTheFolderAreCounted) {
  const int64_t nCount = TraverseFileCnt(m_folder.Path());

  EXPECT_EQ(3, nCount);
}

TEST_F(FolderWalk, WhatTheVectorHoldsStaysBehindFoldersAndFilesAndBeforeEntries) {
  std::vector<std::string> folders = {"old"}, files = {"old"}, entries = {"old"};

  TraverseSubFolders(Path("e"), folders);
  TraverseFiles(Path("B"), files);
  TraverseFolderAndFile(Path("B"), entries);

  EXPECT_THAT(folders, ElementsAre(Path("e/deep"), "old"));
  EXPECT_THAT(files, ElementsAre(Path("B/inner.txt"), "old"));
  EXPECT_THAT(entries, ElementsAre("old", Path("B/inner.txt")));
}

TEST_F(FolderWalk, TrailingSlashIsNotDoubled) {
  std::vector<std::string> folders, files, entries;

  TraverseSubFolders(Path("e/"), folders);
  TraverseFiles(Path("B/"), files);
  TraverseFolderAndFile(Path("B/"), entries);
  const int64_t nCount = TraverseFileCnt(Path("B/"));

  EXPECT_THAT(folders, ElementsAre(Path("e/deep")));
  EXPECT_THAT(files, ElementsAre(Path("B/inner.txt")));
  EXPECT_THAT(entries, ElementsAre(Path("B/inner.txt")));
  EXPECT_EQ(1, nCount);
}

TEST_F(FolderWalk, LinkToAFolderIsAFolder) {
  ASSERT_EQ(0, symlink(Path("e").c_str(), Path("B/link").c_str()));
  std::vector<std::string> folders, files;

  TraverseSubFolders(Path("B"), folders);
  TraverseFiles(Path("B"), files);

  EXPECT_THAT(folders, ElementsAre(Path("B/link")));
  EXPECT_THAT(files, ElementsAre(Path("B/inner.txt")));
}

TEST_F(FolderWalk, MissingFolderIsEmpty) {
  std::vector<std::string> folders, files, entries;

  EXPECT_EQ(1, TraverseSubFolders(Path("missing"), folders));
  EXPECT_EQ(1, TraverseFiles(Path("missing"), files));
  EXPECT_EQ(1, TraverseFolderAndFile(Path("missing"), entries));
  EXPECT_EQ(0, TraverseFileCnt(Path("missing")));

  EXPECT_THAT(folders, IsEmpty());
  EXPECT_THAT(files, IsEmpty());
  EXPECT_THAT(entries, IsEmpty());
}

TEST_F(FolderWalk, NamesBeyondAsciiComeInTheEncodingOfTheLocale) {
  m_folder.Write("B/caf\xC3\xA9.txt", "");
  std::vector<std::string> files;

  TraverseFiles(Path("B"), files);

  EXPECT_THAT(files, ElementsAre(Path("B/inner.txt"), Path("B/caf\xC3\xA9.txt")));
}

TEST_P(Probe, DetectsWhetherTheBackupIsEncrypted) {
  TemporaryFolder folder;
  for (const std::string& strFile : GetParam().files) {
    const size_t nEqual = strFile.find('=');
    folder.Write(strFile.substr(0, nEqual), nEqual == std::string::npos ? "" : strFile.substr(nEqual + 1));
  }

  const int nAnswer = IsBackupEncrypted(folder.Path());

  EXPECT_EQ(GetParam().bEncrypted ? 1 : 0, nAnswer);
}

INSTANTIATE_TEST_SUITE_P(
    Discovery, Probe,
    testing::Values(
        ProbeCase{"NoFileAtAll", {}, false}, ProbeCase{"ManifestAlone", {"Manifest.db=xxxxxxxx"}, false},
        ProbeCase{"FlatStore", {Flat("=SQLite format 3")}, false},
        ProbeCase{"FlatCipher", {Flat("=\x12\x34\x56\x78\x9A\xBC\xDE")}, true},
        ProbeCase{"SixBytesAreEnough", {Flat("=SQLite")}, false},
        ProbeCase{"FiveBytesAreNot", {Flat("=SQLit")}, true}, ProbeCase{"EmptyFile", {Flat("=")}, true},
        ProbeCase{"CaseCounts", {Flat("=sqlite format 3")}, true},
        ProbeCase{"HeadMustStandInFront", {Flat("= SQLite format 3")}, true},
        ProbeCase{"LongCipher", {Flat("=" + std::string(5000, 'x'))}, true},
        ProbeCase{"OldNameOfTheStore", {Flat(".mddata=SQLite format 3")}, false},
        ProbeCase{"OldNameOfACipher", {Flat(".mddata=xxxxxxxx")}, true},
        ProbeCase{"PlainNameGoesFirst", {Flat("=SQLite format 3"), Flat(".mddata=xxxxxxxx")}, false},
        ProbeCase{"PlainNameGoesFirstThoughBroken", {Flat("="), Flat(".mddata=SQLite format 3")}, true},
        ProbeCase{"TwoLevelStore", {"Manifest.db=", TwoLevel("=SQLite format 3")}, false},
        ProbeCase{"TwoLevelCipher", {"Manifest.db=", TwoLevel("=xxxxxxxx")}, true},
        ProbeCase{"TwoLevelOldName", {"Manifest.db=", TwoLevel(".mddata=xxxxxxxx")}, true},
        ProbeCase{"FlatPlaceIsNotTriedBesideAManifestDb", {"Manifest.db=", Flat("=xxxxxxxx")}, false},
        ProbeCase{"TwoLevelPlaceIsNotTriedWithout", {"Manifest.mbdb=", TwoLevel("=xxxxxxxx")}, false}),
    [](const testing::TestParamInfo<ProbeCase>& info) { return info.param.pszName; });

TEST(ProbePath, DoubledSlashIsHarmless) {
  TemporaryFolder folder;
  folder.Write("Manifest.db", "");
  folder.Write(TwoLevel(""), "cipher text");

  const int nAnswer = IsBackupEncrypted(folder.Path() + "/");

  EXPECT_EQ(1, nAnswer);
}
