#include "export/file_copy.h"

#include <sys/stat.h>

#include <gmock/gmock.h>

#include <filesystem>

#include "common/text.h"
#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class FileCopy : public testing::Test {
 protected:
  WrittenFile Copy(const std::string& strName, const std::string& strBytes,
                   const char* pszFolder = "/Camera Roll/") {
    m_folder.Write("backup/31bb", strBytes);
    return m_copier.Copy(pszFolder, strName, ToWide(FromNarrow(m_folder.Path("backup/31bb"))));
  }

  std::string Roll(const std::string& strName = "") const {
    return m_folder.Path("out/Camera Roll/" + strName);
  }

  TemporaryFolder m_folder;
  BackupFileCopier m_copier{FromNarrow(m_folder.Path("out")), FromNarrow(m_folder.Path("backup"))};
};

struct TakenCase {
  const char* pszName;
  const char* pszSecond;
  const char* pszThird;
};

void PrintTo(const TakenCase& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class TakenFileName : public FileCopy, public testing::WithParamInterface<TakenCase> {};

class FolderOutside : public FileCopy, public testing::WithParamInterface<const char*> {};

}  // namespace

TEST_F(FileCopy, CopyIsEqualAndOpenToAll) {
  const WrittenFile result = Copy("IMG_0001.JPG", "picture");

  struct stat attributes;
  ASSERT_EQ(0, stat(Roll("IMG_0001.JPG").c_str(), &attributes));
  EXPECT_TRUE(result.Succeeded());
  EXPECT_EQ(Roll("IMG_0001.JPG"), ToNarrow(result.qstrPath));
  EXPECT_EQ(0777u, attributes.st_mode & 07777);
  EXPECT_EQ("picture", ReadFile(Roll("IMG_0001.JPG")));
}

TEST_F(FileCopy, HasTheTimeOfCopyingUnlessATimeIsGiven) {
  const time_t nStart = time(nullptr) - 5;
  const std::u16string wstrSource = ToWide(FromNarrow(m_folder.Write("backup/31bb", "picture")));

  m_copier.Copy("/Camera Roll/", "a.JPG", wstrSource);
  m_copier.Copy("/Camera Roll/", "b.JPG", wstrSource, 1462093953);

  struct stat now, given;
  ASSERT_EQ(0, stat(Roll("a.JPG").c_str(), &now));
  ASSERT_EQ(0, stat(Roll("b.JPG").c_str(), &given));
  EXPECT_LE(nStart, now.st_mtime);
  EXPECT_EQ(1462093953, given.st_mtime);
}

TEST_F(FileCopy, FoldersAreMadeWithTheirParents) {
  const WrittenFile result = Copy("a.JPG", "picture", "/App Photos/example.Snap/");

  EXPECT_TRUE(result.Succeeded());
  EXPECT_EQ("picture", ReadFile(m_folder.Path("out/App Photos/example.Snap/a.JPG")));
}

TEST_P(TakenFileName, GetsTheFirstFreeNumber) {
  Copy(GetParam().pszName, "first");

  const WrittenFile second = Copy(GetParam().pszName, "second");
  const WrittenFile third = Copy(GetParam().pszName, "third");

  EXPECT_EQ(Roll(GetParam().pszSecond), ToNarrow(second.qstrPath));
  EXPECT_EQ(Roll(GetParam().pszThird), ToNarrow(third.qstrPath));
  EXPECT_EQ("first", ReadFile(Roll(GetParam().pszName)));
  EXPECT_EQ("second", ReadFile(Roll(GetParam().pszSecond)));
  EXPECT_EQ("third", ReadFile(Roll(GetParam().pszThird)));
}

INSTANTIATE_TEST_SUITE_P(Names, TakenFileName,
                         testing::Values(TakenCase{"a.JPG", "a(1).JPG", "a(2).JPG"},
                                         TakenCase{"a.b.MP4", "a.b(1).MP4", "a.b(2).MP4"},
                                         TakenCase{"plain", "plain(1)", "plain(2)"},
                                         TakenCase{"\xE5\xB1\xB1.JPG", "\xE5\xB1\xB1(1).JPG",
                                                   "\xE5\xB1\xB1(2).JPG"}),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST_F(FileCopy, NamesThatWereThereBeforeAreSkipped) {
  for (const char* pszName : {"a.JPG", "a(1).JPG", "a(3).JPG"})
    m_folder.Write(std::string("out/Camera Roll/") + pszName, "old");

  Copy("a.JPG", "second");
  Copy("a.JPG", "fourth");

  EXPECT_EQ("second", ReadFile(Roll("a(2).JPG")));
  EXPECT_EQ("fourth", ReadFile(Roll("a(4).JPG")));
  EXPECT_EQ("old", ReadFile(Roll("a(3).JPG")));
}

TEST_F(FileCopy, AnotherRecoveryIntoTheFolderGoesOnCounting) {
  Copy("a.JPG", "first");
  m_copier = BackupFileCopier(FromNarrow(m_folder.Path("out")), FromNarrow(m_folder.Path("backup")));

  Copy("a.JPG", "second");

  EXPECT_THAT(NamesIn(Roll()), ElementsAre("a(1).JPG", "a.JPG"));
}

TEST_F(FileCopy, AFolderRemovedMeanwhileIsRecreated) {
  Copy("a.JPG", "first");
  std::filesystem::remove_all(m_folder.Path("out"));

  EXPECT_TRUE(Copy("b.JPG", "second").Succeeded());

  EXPECT_THAT(NamesIn(Roll()), ElementsAre("b.JPG"));
}

TEST_F(FileCopy, AFolderThatCannotBeRecreatedFailsWithTheReason) {
  Copy("a.JPG", "first");
  std::filesystem::remove_all(m_folder.Path("out"));
  m_folder.Write("out", "a file in its place");

  const WrittenFile result = Copy("b.JPG", "second");

  EXPECT_FALSE(result.Succeeded());
  EXPECT_NE("", result.problem.strReason);
  EXPECT_EQ("a file in its place", ReadFile(m_folder.Path("out")));
}

TEST_F(FileCopy, NameOfAnotherFolderIsFree) {
  Copy("a.JPG", "first");

  const WrittenFile result = Copy("a.JPG", "second", "/Photo Stream/");

  EXPECT_EQ(m_folder.Path("out/Photo Stream/a.JPG"), ToNarrow(result.qstrPath));
}

TEST_F(FileCopy, MissingSourceFailsWithItsReasonAndThePathThatWasWanted) {
  const WrittenFile result =
      m_copier.Copy("/Camera Roll/", "a.JPG", ToWide(FromNarrow(m_folder.Path("missing"))));

  EXPECT_FALSE(result.Succeeded());
  EXPECT_EQ(Roll("a.JPG"), ToNarrow(result.qstrPath));
  EXPECT_FALSE(Exists(Roll("a.JPG")));
}

TEST_F(FileCopy, FailedCopyDoesNotReserveItsName) {
  m_copier.Copy("/Camera Roll/", "a.JPG", ToWide(FromNarrow(m_folder.Path("missing"))));

  const WrittenFile result = Copy("a.JPG", "picture");

  EXPECT_EQ(Roll("a.JPG"), ToNarrow(result.qstrPath));
  EXPECT_EQ("picture", ReadFile(Roll("a.JPG")));
}

TEST_P(FolderOutside, IsRefused) {
  m_folder.MakeFolder("out");

  const WrittenFile result = Copy("a.JPG", "picture", GetParam());

  EXPECT_FALSE(result.Succeeded());
  EXPECT_THAT(NamesIn(m_folder.Path()), ElementsAre("backup", "out"));
  EXPECT_THAT(NamesIn(m_folder.Path("out")), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Folders, FolderOutside,
                         testing::Values("/../", "/App Photos/../../x/", "/App Photos/../", "/../../"),
                         [](const auto& info) { return "Case" + std::to_string(info.index); });

TEST_F(FileCopy, DotsWithinAFolderNameAreNotParentSteps) {
  const WrittenFile result = Copy("a.JPG", "picture", "/App Photos/..example../");

  EXPECT_TRUE(result.Succeeded());
  EXPECT_EQ("picture", ReadFile(m_folder.Path("out/App Photos/..example../a.JPG")));
}
