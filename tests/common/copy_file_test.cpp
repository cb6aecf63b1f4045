#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>

#include "common/file.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

class CopyFile : public testing::Test {
 protected:
  CopyFile() : m_strSource(m_folder.Path("source")), m_strTarget(m_folder.Path("target")) {}

  Problem Copy(const std::string& strSource) { return CopyBackupFile(strSource, m_strTarget, 0777); }
  void WriteSource(const std::string& strContent) {
    std::ofstream(m_strSource, std::ios::binary) << strContent;
  }
  bool TargetExists() const {
    struct stat info;
    return lstat(m_strTarget.c_str(), &info) == 0;
  }
  static std::string Content(const std::string& strPath) {
    std::ifstream file(strPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  TemporaryFolder m_folder;
  std::string m_strSource;
  std::string m_strTarget;
};

TEST_F(CopyFile, HasTheContentOfTheSource) {
  std::string strContent(3'000'001, 'x');
  for (size_t i = 0; i < strContent.size(); ++i) strContent[i] = static_cast<char>(i * 7 + i / 251);
  WriteSource(strContent);

  const Problem problem = Copy(m_strSource);

  EXPECT_EQ(Problem::Step::None, problem.step);
  EXPECT_TRUE(strContent == Content(m_strTarget));
}

TEST_F(CopyFile, AnEmptySourceGivesAnEmptyFile) {
  WriteSource("");

  EXPECT_EQ(Problem::Step::None, Copy(m_strSource).step);
  EXPECT_TRUE(TargetExists());
  EXPECT_EQ("", Content(m_strTarget));
}

TEST_F(CopyFile, HasTheTimeThatIsGiven) {
  WriteSource("x");

  EXPECT_FALSE(CopyBackupFile(m_strSource, m_strTarget, 0777, 1462093953));

  struct stat info;
  ASSERT_EQ(0, stat(m_strTarget.c_str(), &info));
  EXPECT_EQ(1462093953, info.st_mtime);
}

TEST_F(CopyFile, HasThePresentTimeIfTheGivenOneCannotBeStored) {
  const time_t nStart = time(nullptr) - 5;
  WriteSource("x");

  for (const int64_t nModified : {int64_t{-1}, INT64_MIN, INT64_MAX, int64_t{253402300799}}) {
    unlink(m_strTarget.c_str());
    EXPECT_FALSE(CopyBackupFile(m_strSource, m_strTarget, 0777, nModified));
    struct stat info;
    ASSERT_EQ(0, stat(m_strTarget.c_str(), &info));
    // Some file systems can store any time.
    if (info.st_mtime != nModified) {
      EXPECT_LE(nStart, info.st_mtime) << nModified;
      EXPECT_GE(time(nullptr) + 5, info.st_mtime) << nModified;
    }
  }
}

TEST_F(CopyFile, HasItsModeRegardlessOfTheUmask) {
  WriteSource("x");
  const mode_t nOldMask = umask(077);

  Copy(m_strSource);

  umask(nOldMask);
  struct stat info;
  ASSERT_EQ(0, stat(m_strTarget.c_str(), &info));
  EXPECT_EQ(0777u, info.st_mode & 07777);
}

TEST_F(CopyFile, SourceWithReportedSizeZeroIsReadToItsEnd) {
  // The system reports a size of zero.
  const Problem problem = Copy("/proc/self/status");

  EXPECT_EQ(Problem::Step::None, problem.step);
  EXPECT_NE(std::string::npos, Content(m_strTarget).find("Pid:"));
}

TEST_F(CopyFile, ExistingFileIsNotOverwritten) {
  WriteSource("new");
  std::ofstream(m_strTarget) << "old";

  const Problem problem = Copy(m_strSource);

  EXPECT_EQ(Problem::Step::Create, problem.step);
  EXPECT_EQ(EEXIST, problem.nCode);
  EXPECT_EQ("old", Content(m_strTarget));
}

TEST_F(CopyFile, DanglingLinkAsDestinationIsNotFollowed) {
  WriteSource("new");
  const std::string strElsewhere = m_folder.Path("elsewhere");
  ASSERT_EQ(0, symlink(strElsewhere.c_str(), m_strTarget.c_str()));

  EXPECT_EQ(Problem::Step::Create, Copy(m_strSource).step);

  struct stat info;
  EXPECT_NE(0, lstat(strElsewhere.c_str(), &info));
}

TEST_F(CopyFile, MissingSourceCreatesNothing) {
  const Problem problem = Copy(m_strSource);

  EXPECT_EQ(Problem::Step::Open, problem.step);
  EXPECT_EQ(ENOENT, problem.nCode);
  EXPECT_FALSE(TargetExists());
}

TEST_F(CopyFile, FolderOrFifoAsSourceIsRefused) {
  const std::string strPipe = m_folder.Path("pipe");
  ASSERT_EQ(0, mkfifo(strPipe.c_str(), 0600));

  EXPECT_EQ(EISDIR, Copy(m_folder.Path("")).nCode);
  EXPECT_EQ(ENXIO, Copy(strPipe).nCode);
  EXPECT_FALSE(TargetExists());
}

TEST_F(CopyFile, FailedCopyLeavesNoFile) {
  WriteSource(std::string(2'000'000, 'x'));
  // Temporarily limit the size of files that this process may write.
  const auto oldHandler = signal(SIGXFSZ, SIG_IGN);
  rlimit oldLimit;
  getrlimit(RLIMIT_FSIZE, &oldLimit);
  rlimit limit = oldLimit;
  limit.rlim_cur = 1'000'000;
  setrlimit(RLIMIT_FSIZE, &limit);

  const Problem problem = Copy(m_strSource);

  setrlimit(RLIMIT_FSIZE, &oldLimit);
  signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(Problem::Step::Write, problem.step);
  EXPECT_EQ(EFBIG, problem.nCode);
  EXPECT_FALSE(TargetExists());
}

}  // namespace
