#include "cli/private_folder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "tests/support.h"

using namespace orvandel;
namespace fs = std::filesystem;

namespace {

bool IsThere(const std::string& strPath) {
  return fs::exists(fs::symlink_status(strPath));
}

/// Lets a child process create a private folder with a file and a link in it, and kills the child.
/// @return the path of the folder; empty if something failed.
std::string FolderOfAKilledProcess(const std::string& strParent, const std::string& strLinkTarget) {
  int pipes[2];
  if (pipe(pipes) != 0) return {};
  const pid_t nChild = fork();
  if (nChild == 0) {
    const PrivateFolder folder(strParent);
    fs::create_directory(folder.Path() + "/inner");
    std::ofstream(folder.Path() + "/inner/file") << "decrypted";
    fs::create_symlink(strLinkTarget, folder.Path() + "/inner/link");
    const ssize_t nWritten = write(pipes[1], folder.Path().data(), folder.Path().size());
    close(pipes[1]);
    if (nWritten > 0) pause();
    _exit(1);
  }
  close(pipes[1]);
  char path[4096];
  const ssize_t nRead = nChild < 0 ? -1 : read(pipes[0], path, sizeof path);
  close(pipes[0]);
  if (nChild < 0) return {};
  kill(nChild, SIGKILL);
  waitpid(nChild, nullptr, 0);
  return nRead <= 0 ? std::string() : std::string(path, static_cast<size_t>(nRead));
}

/// A parent for private folders.
class PrivateFolders : public testing::Test {
 protected:
  std::string Parent() const { return m_folder.Path("parent"); }
  std::string InParent(const std::string& strName) const { return Parent() + "/" + strName; }

  void SetUp() override { ASSERT_TRUE(fs::create_directory(Parent())); }

  TemporaryFolder m_folder;
};

}  // namespace

TEST_F(PrivateFolders, IsForItsUserAlone) {
  const PrivateFolder folder(Parent());

  struct stat info = {};
  ASSERT_EQ(stat(folder.Path().c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 07777, 0700u);
  EXPECT_EQ(info.st_uid, geteuid());
  EXPECT_EQ(folder.Path().find(InParent("orvandel-work-")), 0u) << folder.Path();
  EXPECT_TRUE(folder.IsValid());
  EXPECT_EQ(folder.Problem(), "");
}

TEST_F(PrivateFolders, IsRemovedWithItsContentAtTheEnd) {
  {
    const PrivateFolder folder(Parent());
    ASSERT_TRUE(fs::create_directories(folder.Path() + "/a/b"));
    std::ofstream(folder.Path() + "/a/b/file") << "decrypted";
  }

  EXPECT_TRUE(fs::is_empty(Parent()));
}

TEST_F(PrivateFolders, IsRemovedOnRequest) {
  PrivateFolder folder(Parent());

  folder.RemoveNow();
  folder.RemoveNow();

  EXPECT_FALSE(folder.IsValid());
  EXPECT_TRUE(fs::is_empty(Parent()));
}

TEST_F(PrivateFolders, WithoutAParentItSaysWhy) {
  const PrivateFolder folder(InParent("missing"));

  EXPECT_FALSE(folder.IsValid());
  EXPECT_EQ(folder.Path(), "");
  EXPECT_EQ(folder.Problem(), "No such file or directory");
}

TEST_F(PrivateFolders, FolderOfAKilledProcessIsRemovedByTheNext) {
  const std::string strTarget = m_folder.Path("target");
  std::ofstream(strTarget) << "a stranger's";
  const std::string strLeft = FolderOfAKilledProcess(Parent(), strTarget);
  ASSERT_TRUE(IsThere(strLeft + "/inner/file")) << "nothing was left: " << strLeft;

  const PrivateFolder folder(Parent());

  EXPECT_FALSE(IsThere(strLeft));
  EXPECT_TRUE(IsThere(strTarget)) << "a link was followed";
  EXPECT_TRUE(IsThere(folder.Path()));
}

TEST_F(PrivateFolders, FolderOfALivingOwnerStays) {
  const PrivateFolder first(Parent());
  const PrivateFolder second(Parent());

  EXPECT_TRUE(IsThere(first.Path()));
  EXPECT_TRUE(IsThere(second.Path()));
}

TEST_F(PrivateFolders, LinkWithSuchANameAndItsTargetStay) {
  const std::string strTarget = m_folder.Path("orvandel-target");
  fs::create_directory(strTarget);
  fs::permissions(strTarget, fs::perms::owner_all);
  std::ofstream(strTarget + "/file") << "a stranger's";
  fs::create_directory_symlink(strTarget, InParent("orvandel-work-abcdef"));

  const PrivateFolder folder(Parent());

  EXPECT_TRUE(IsThere(InParent("orvandel-work-abcdef")));
  EXPECT_TRUE(IsThere(strTarget + "/file"));
}

TEST_F(PrivateFolders, FileWithSuchANameStays) {
  std::ofstream(InParent("orvandel-work-abcdef")) << "a stranger's";
  fs::permissions(InParent("orvandel-work-abcdef"), fs::perms::owner_all);

  const PrivateFolder folder(Parent());

  EXPECT_TRUE(IsThere(InParent("orvandel-work-abcdef")));
}

TEST_F(PrivateFolders, OnlyFoldersWithItsNameAndRightsAreRemoved) {
  const struct {
    const char* pszName;
    unsigned nMode;
    bool bStays;
  } cases[] = {
      {"orvandel-work-abcdef", 0700, false}, {"orvandel-work-ghijkl", 0755, true},
      {"orvandel-work-mnopqr", 0770, true},  {"orvandel-work-abcde", 0700, true},
      {"orvandel-work-abcdefg", 0700, true}, {"orvandel_work_abcdef", 0700, true},
      {"orvandel-work-AB12zz", 0755, true},
  };
  for (const auto& entry : cases) {
    fs::create_directory(InParent(entry.pszName));
    fs::permissions(InParent(entry.pszName), static_cast<fs::perms>(entry.nMode));
  }

  const PrivateFolder folder(Parent());

  for (const auto& entry : cases)
    EXPECT_EQ(IsThere(InParent(entry.pszName)), entry.bStays)
        << entry.pszName << ' ' << std::oct << entry.nMode;
}

TEST_F(PrivateFolders, FolderOfAnotherUserStays) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a folder away";
  fs::create_directory(InParent("orvandel-work-abcdef"));
  fs::permissions(InParent("orvandel-work-abcdef"), fs::perms::owner_all);
  ASSERT_EQ(chown(InParent("orvandel-work-abcdef").c_str(), 65534, 65534), 0);

  const PrivateFolder folder(Parent());

  EXPECT_TRUE(IsThere(InParent("orvandel-work-abcdef")));
}

TEST_F(PrivateFolders, NoneIsRemovedByOwnersThatStartAtTheSameTime) {
  std::atomic<int> nLost{0};
  std::vector<std::thread> owners;
  for (int i = 0; i < 8; ++i)
    owners.emplace_back([&] {
      for (int j = 0; j < 200; ++j) {
        const PrivateFolder folder(Parent());
        if (!folder.IsValid() || !(std::ofstream(folder.Path() + "/file") << "decrypted").flush()) ++nLost;
      }
    });
  for (std::thread& owner : owners) owner.join();

  EXPECT_EQ(nLost, 0);
  EXPECT_TRUE(fs::is_empty(Parent()));
}
