#include "common/path.h"

#include <gtest/gtest.h>

#include "tests/support.h"

using namespace orvandel;

namespace {

struct SplitCase {
  const char* pszTitle;
  const char* pszPath;
  const char* pszFolder;
  const char* pszName;
  const char* pszExtension;
};

struct ExtensionCase {
  const char* pszTitle;
  const char* pszName;
  const char* pszExtension;
};

/// The free name for a path, as narrow UTF-8.
std::string FreeName(const std::string& strPath) {
  const std::u16string wstrFree = GetRealFileName(strPath.c_str());
  return QString::fromStdU16String(wstrFree).toUtf8().toStdString();
}

const SplitCase kPaths[] = {{"FileInFolders", "/a/b/c.txt", "/a/b/", "c", ".txt"},
                            {"TrailingSlashIsAFolderWithAnEmptyName", "/a/b/", "/a/b/", "", ""},
                            {"TrailingSlashBehindADot", "/a.d/", "/a.d/", "", ""},
                            {"RootAlone", "/", "/", "", ""},
                            {"FileInRoot", "/c.txt", "/", "c", ".txt"},
                            {"DotInTheFolderOnly", "/a.d/c", "/a.d/", "c", ""},
                            {"LastDotCounts", "/a/c.tar.gz", "/a/", "c.tar", ".gz"},
                            {"DotAtTheEnd", "/a/c.", "/a/", "c", "."},
                            {"DotAtTheFront", "/a/.c", "/a/", "", ".c"},
                            {"RelativePath", "a/c.txt", "a/", "c", ".txt"},
                            {"NameAlone", "c.txt", "", "c", ".txt"},
                            {"NameAloneWithTwoDots", "c.tar.gz", "", "c.tar", ".gz"},
                            {"NameAloneWithoutDot", "c", "", "c", ""},
                            {"BackslashIsAnOrdinaryLetter", "a\\b.txt", "", "a\\b", ".txt"},
                            {"EmptyPath", "", "", "", ""},
                            {"NullPath", nullptr, "", "", ""}};

const ExtensionCase kExtensions[] = {{"OneDot", "a.txt", "txt"},
                                     {"TwoDots", "a.tar.gz", "gz"},
                                     {"CapitalsStay", "IMG_0001.JPG", "JPG"},
                                     {"DotAtTheEnd", "a.", ""},
                                     {"DotAtTheFront", ".plist", "plist"}};

}  // namespace

TEST(SplitPath, FallsIntoItsParts) {
  for (const SplitCase& row : kPaths) {
    SCOPED_TRACE(row.pszTitle);
    std::string strDrive = "old", strFolder = "old", strName = "old", strExtension = "old";

    _splitpath(row.pszPath, strDrive, strFolder, strName, strExtension);

    EXPECT_EQ("", strDrive);
    EXPECT_EQ(row.pszFolder, strFolder);
    EXPECT_EQ(row.pszName, strName);
    EXPECT_EQ(row.pszExtension, strExtension);
  }
}

TEST(Extension, IsWhatFollowsTheLastDot) {
  for (const ExtensionCase& row : kExtensions) {
    SCOPED_TRACE(row.pszTitle);
    std::string strExtension = "old";

    const int nStatus = GetExtendName(row.pszName, strExtension);

    EXPECT_EQ(0, nStatus);
    EXPECT_EQ(row.pszExtension, strExtension);
  }
}

TEST(Extension, NameWithoutADotFailsAndWritesNothing) {
  std::string strExtension = "old";

  const int nStatus = GetExtendName("Manifest", strExtension);

  EXPECT_EQ(87, nStatus);
  EXPECT_EQ("old", strExtension);
}

TEST(Extension, EmptyNameFailsAndWritesNothing) {
  std::string strExtension = "old";

  const int nStatus = GetExtendName("", strExtension);

  EXPECT_EQ(87, nStatus);
  EXPECT_EQ("old", strExtension);
}

TEST(Extension, NullNameFailsAndWritesNothing) {
  std::string strExtension = "old";

  const int nStatus = GetExtendName(nullptr, strExtension);

  EXPECT_EQ(87, nStatus);
  EXPECT_EQ("old", strExtension);
}

TEST(FreeFileName, PathThatIsFreeStaysAsItIs) {
  TemporaryFolder folder;

  const std::string strFree = FreeName(folder.Path("a.txt"));

  EXPECT_EQ(folder.Path("a.txt"), strFree);
}

TEST(FreeFileName, FirstNumberThatIsFreeIsTaken) {
  TemporaryFolder folder;
  folder.Write("a.txt", "");
  folder.Write("a(1).txt", "");

  const std::string strFree = FreeName(folder.Path("a.txt"));

  EXPECT_EQ(folder.Path("a(2).txt"), strFree);
}

TEST(FreeFileName, GapInTheNumbersIsFilled) {
  TemporaryFolder folder;
  folder.Write("a.txt", "");
  folder.Write("a(2).txt", "");

  const std::string strFree = FreeName(folder.Path("a.txt"));

  EXPECT_EQ(folder.Path("a(1).txt"), strFree);
}

TEST(FreeFileName, NameWithoutADotGetsTheNumberAtItsEnd) {
  TemporaryFolder folder;
  folder.Write("some.folder/note", "");

  const std::string strFree = FreeName(folder.Path("some.folder/note"));

  EXPECT_EQ(folder.Path("some.folder/note(1)"), strFree);
}

TEST(FreeFileName, NumberIsInsertedBeforeTheLastExtensionOnly) {
  TemporaryFolder folder;
  folder.Write("a.tar.gz", "");

  const std::string strFree = FreeName(folder.Path("a.tar.gz"));

  EXPECT_EQ(folder.Path("a.tar(1).gz"), strFree);
}

TEST(FreeFileName, FolderOfThatNameOccupiesThePathToo) {
  TemporaryFolder folder;
  folder.MakeFolder("Photos");

  const std::string strFree = FreeName(folder.Path("Photos"));

  EXPECT_EQ(folder.Path("Photos(1)"), strFree);
}

TEST(FreeFileName, NameBeyondAsciiGoesThroughTheLocale) {
  TemporaryFolder folder;
  folder.Write(
      "Gr\xC3\xBC\xC3\x9F"
      "e.txt",
      "");

  const std::string strFree =
      FreeName(folder.Path("Gr\xC3\xBC\xC3\x9F"
                           "e.txt"));

  EXPECT_EQ(folder.Path("Gr\xC3\xBC\xC3\x9F"
                        "e(1).txt"),
            strFree);
}

TEST(FreeFileName, PathOf600BytesKeepsAllOfThem) {
  TemporaryFolder folder;
  const std::string strDeep =
      std::string(200, 'x') + "/" + std::string(200, 'y') + "/" + std::string(190, 'z');
  folder.Write(strDeep + ".txt", "");

  const std::string strFree = FreeName(folder.Path(strDeep + ".txt"));

  EXPECT_EQ(folder.Path(strDeep + "(1).txt"), strFree);
}

TEST(FreeNames, FirstIsThePathItself) {
  TemporaryFolder folder;
  FreeNames names;

  const std::string strFree = names.Take(folder.Path("a.txt"));

  EXPECT_EQ(folder.Path("a.txt"), strFree);
}

TEST(FreeNames, ContinueAfterTheLastNumberUsed) {
  TemporaryFolder folder;
  folder.Write("a.txt", "");
  folder.Write("a(1).txt", "");
  FreeNames names;

  const std::string strFirst = names.Take(folder.Path("a.txt"));
  folder.Write("a(2).txt", "");
  const std::string strSecond = names.Take(folder.Path("a.txt"));

  EXPECT_EQ(folder.Path("a(2).txt"), strFirst);
  EXPECT_EQ(folder.Path("a(3).txt"), strSecond);
}

TEST(FreeNames, AreCountedForEachPathByItself) {
  TemporaryFolder folder;
  folder.Write("a.txt", "");
  folder.Write("b.txt", "");
  FreeNames names;

  const std::string strFirst = names.Take(folder.Path("a.txt"));
  const std::string strSecond = names.Take(folder.Path("b.txt"));

  EXPECT_EQ(folder.Path("a(1).txt"), strFirst);
  EXPECT_EQ(folder.Path("b(1).txt"), strSecond);
}

TEST(ParentStep, IsFoundAtAnyPlaceAsAWholeStepAlone) {
  EXPECT_TRUE(HasParentStep(".."));
  EXPECT_TRUE(HasParentStep("../a"));
  EXPECT_TRUE(HasParentStep("a/../b"));
  EXPECT_TRUE(HasParentStep("a/.."));
  EXPECT_FALSE(HasParentStep("a..b/..c/d.."));
  EXPECT_FALSE(HasParentStep(""));
}
