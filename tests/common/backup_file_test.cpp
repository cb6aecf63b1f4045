// Opening and copying the files of a backup, whatever is in their place.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "common/file.h"
#include "common/text.h"
#include "tests/support.h"

using namespace orvandel;
namespace fs = std::filesystem;

namespace {

constexpr char kId[] = "3d0d7e5fb2ce288813306e4d4636395e047a3d28";

/// An object in a file's place, and the expected result of opening it.
struct Place {
  const char* pszName;
  void (*pfnMake)(const TemporaryFolder& folder, const std::string& strPath);
  std::string strPath;  ///< below the temporary folder
  int nError;           ///< expected errno; 0 if it can be opened
  bool bFlat = false;   ///< the backup isn't sharded
};

void PrintTo(const Place& place, std::ostream* pStream) {
  *pStream << place.pszName;
}

void MakeNothing(const TemporaryFolder&, const std::string&) {}

void MakeFile(const TemporaryFolder&, const std::string& strPath) {
  WriteFile(strPath, "content");
}

void MakeLink(const TemporaryFolder& folder, const std::string& strPath) {
  fs::create_directories(fs::path(strPath).parent_path());
  fs::create_symlink(folder.Write("elsewhere", "secret"), strPath);
}

void MakeLinkedFolder(const TemporaryFolder& folder, const std::string& strPath) {
  const fs::path path(strPath);
  folder.Write("elsewhere/" + path.filename().string(), "content");
  fs::create_directories(path.parent_path().parent_path());
  fs::create_directory_symlink(folder.Path("elsewhere"), path.parent_path());
}

void MakePipe(const TemporaryFolder&, const std::string& strPath) {
  fs::create_directories(fs::path(strPath).parent_path());
  ASSERT_EQ(0, mkfifo(strPath.c_str(), 0600));
}

void MakeFolder(const TemporaryFolder&, const std::string& strPath) {
  fs::create_directories(strPath);
}

std::string Sharded(const std::string& strId) {
  return "backup/" + strId.substr(0, 2) + "/" + strId;
}

const Place kPlaces[] = {
    {"File", MakeFile, Sharded(kId), 0},
    {"FlatFile", MakeFile, std::string("backup/") + kId, 0, true},
    {"Nothing", MakeNothing, Sharded(kId), ENOENT},
    {"Link", MakeLink, Sharded(kId), ELOOP},
    {"FlatLink", MakeLink, std::string("backup/") + kId, ELOOP, true},
    {"LinkInPlaceOfTheTwoCharacterFolder", MakeLinkedFolder, Sharded(kId), ELOOP},
    {"LinkInPlaceOfAShorterFolder", MakeLinkedFolder, "backup/a/a", ELOOP},
    {"LinkInPlaceOfALongerFolder", MakeLinkedFolder, "backup/\xC3\xA4\xC3\xB6/\xC3\xA4\xC3\xB6x", ELOOP},
    {"LinkInPlaceOfTheBackupsFolder", MakeLinkedFolder, std::string("backup/") + kId, 0},
    {"LinkInPlaceOfAFlatBackupsFolder", MakeLinkedFolder, Sharded(kId), 0, true},
    {"Pipe", MakePipe, Sharded(kId), ENXIO},
    {"Folder", MakeFolder, Sharded(kId), EISDIR},
};

class BackupFile : public testing::TestWithParam<Place> {
 protected:
  void SetUp() override {
    GetParam().pfnMake(m_folder, Path());
    if (!GetParam().bFlat) DeclareSharded(m_folder.Path("backup"));
  }
  std::string Path() const { return m_folder.Path(GetParam().strPath); }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_P(BackupFile, IsOpenedOnlyWhenItIsARegularFile) {
  Result<OpenedFile> file = OpenBackupFile(Path());

  EXPECT_EQ(GetParam().nError, file ? 0 : file.Error().nCode);
  if (file) {
    EXPECT_EQ(7, file->nSize);
    EXPECT_NE(-1, file->descriptor.Get());
  } else {
    EXPECT_EQ(Problem::Step::Open, file.Error().step);
    EXPECT_EQ(Path(), file.Error().strFile);
    EXPECT_NE("", file.Error().strReason);
  }
}

TEST_P(BackupFile, HasASizeOnlyWhenItIsARegularFile) {
  // The size of files whose names aren't representable in Latin-1 isn't found.
  if (Path().find('\xC3') != std::string::npos) GTEST_SKIP() << "not found by its size";
  long long nSize = -1;

  const int nError = GetFileByteSize(Ansi2Unicode(Path().c_str()).c_str(), nSize);

  EXPECT_EQ(GetParam().nError, nError);
  EXPECT_EQ(nError == 0 ? 7 : -1, nSize);
}

TEST_P(BackupFile, IsCopiedOnlyWhenItIsARegularFile) {
  const std::string strTarget = m_folder.Path("copy");

  const Problem problem = CopyBackupFile(Path(), strTarget, kRecoveredFileRights);

  EXPECT_EQ(GetParam().nError, problem.nCode);
  EXPECT_EQ(GetParam().nError == 0 ? Problem::Step::None : Problem::Step::Open, problem.step);
  EXPECT_EQ(GetParam().nError == 0, Exists(strTarget));
}

INSTANTIATE_TEST_SUITE_P(Places, BackupFile, testing::ValuesIn(kPlaces),
                         [](const auto& info) { return std::string(info.param.pszName); });

TEST(CopyOfABackupFile, LeavesAnExistingFileUnchanged) {
  TemporaryFolder folder;
  const std::string strSource = folder.Write("source", "new");
  const std::string strTarget = folder.Write("target", "old");
  ASSERT_EQ(0, chmod(strTarget.c_str(), 0600));

  const Problem problem = CopyBackupFile(strSource, strTarget, kRecoveredFileRights);

  EXPECT_EQ(Problem::Step::Create, problem.step);
  EXPECT_EQ(EEXIST, problem.nCode);
  EXPECT_EQ("old", ReadFile(strTarget));
  EXPECT_EQ(fs::perms(0600), fs::status(strTarget).permissions());
}

TEST(CopyOfABackupFile, FollowsNoLinkInPlaceOfTheCopy) {
  TemporaryFolder folder;
  const std::string strSource = folder.Write("source", "new");
  fs::create_symlink(folder.Path("elsewhere"), folder.Path("target"));

  const Problem problem = CopyBackupFile(strSource, folder.Path("target"), 0777);

  EXPECT_EQ(Problem::Step::Create, problem.step);
  EXPECT_FALSE(Exists(folder.Path("elsewhere")));
}
