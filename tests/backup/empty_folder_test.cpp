// An empty path is never listed as a folder, which would be the root of the disk.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "backup/session.h"
#include "tests/scan_support.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

enum ChildStatus { kFileIsThere, kFileIsGone, kNoChroot };

/// Scans an encrypted backup without a folder of decrypted files and clears the temporary folder, in a
/// process whose root is a folder of the test.
ChildStatus ScanWithoutAFolder(const std::string& strRoot) {
  if (chroot(strRoot.c_str()) != 0 || chdir("/") != 0) return kNoChroot;
  SetPlaces("/backups", "/work");
  CIphoneBackupFile session;
  const __BACK_FILE_INFO__ info = InfoOf("/backup", true);
  session.Init(&info);
  session.Scan(QString());
  session.ClearTempDir();
  return access("/precious", F_OK) == 0 ? kFileIsThere : kFileIsGone;
}

}  // namespace

TEST(EmptyFolderOfDecryptedFiles, IsNeverTakenForTheRootFolder) {
  TemporaryFolder root;
  root.Write("precious", "mine");
  root.MakeFolder("backup");

  const pid_t nChild = fork();
  if (nChild == 0) _exit(ScanWithoutAFolder(root.Path()));
  int nStatus = 0;
  ASSERT_EQ(nChild, waitpid(nChild, &nStatus, 0));

  ASSERT_TRUE(WIFEXITED(nStatus));
  if (WEXITSTATUS(nStatus) == kNoChroot) GTEST_SKIP() << "not allowed to change the root";
  EXPECT_EQ(kFileIsThere, WEXITSTATUS(nStatus));
}
