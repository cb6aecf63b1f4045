#include "decrypt/client.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <limits>

#include "tests/support.h"

using namespace orvandel;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A script in place of the tool, and the lines that a client receives.
class DecryptClientTest : public testing::Test {
 protected:
  void WriteTool(const std::string& strScript) {
    m_folder.Write("Velmora Orvandel", "#!/bin/sh\n" + strScript);
    ASSERT_EQ(0, chmod(m_folder.Path("Velmora Orvandel").c_str(), 0755));
    SetProgramFolder(m_folder.Path() + "/");
  }
  DecryptClient::LineHandler Collect() {
    return [this](const QByteArray& line) {
      m_lines.push_back(line.toStdString());
      return false;
    };
  }

  TemporaryFolder m_folder;
  std::vector<std::string> m_lines;
};

struct CountLine {
  const char* pszName;
  const char* pszLine;
  std::optional<qint64> nCount;
};

void PrintTo(const CountLine& line, std::ostream* pStream) {
  *pStream << line.pszName;
}

class LineOfTheTool : public testing::TestWithParam<CountLine> {};

}  // namespace

TEST_F(DecryptClientTest, StartsTheCheckByACommandStringWithAnUnquotedPassword) {
  WriteTool("printf '%s\\n' \"$@\"");
  DecryptClient client(Collect());

  EXPECT_TRUE(client.StartByCommand(ToolTask::CheckPassword, "/a backup", "/work//folder", "two words"));
  client.Wait();

  EXPECT_THAT(m_lines, ElementsAre("/a backup\n", "/work//folder\n", "two\n", "words\n", "CheckPasswd\n"));
}

TEST_F(DecryptClientTest, StartsTheDecryptionByTheSameStringWithoutTheMode) {
  WriteTool("printf '%s\\n' \"$@\"");
  DecryptClient client(Collect());

  EXPECT_TRUE(client.StartByCommand(ToolTask::Decrypt, "/a backup", "/work//folder", "secret"));
  client.Wait();

  EXPECT_THAT(m_lines, ElementsAre("/a backup\n", "/work//folder\n", "secret\n"));
}

TEST_F(DecryptClientTest, StartedByACommandStringReadsStandardErrorToo) {
  WriteTool("echo out; echo err >&2; echo again");
  DecryptClient client(Collect());

  client.StartByCommand(ToolTask::Decrypt, "b", "f", "p");
  client.Wait();

  EXPECT_THAT(m_lines, ElementsAre("out\n", "err\n", "again\n"));
}

TEST_F(DecryptClientTest, LeavingTheBackupWritesThePasswordToStandardInput) {
  WriteTool("printf '%s\\n' \"$@\"; cat; echo; echo 'a file: broken' >&2; exit 1");
  DecryptClient client(Collect());
  QByteArray password = "two words";

  EXPECT_TRUE(client.StartLeavingBackup("/a backup", "/folder", password));
  client.Wait();

  EXPECT_THAT(m_lines, ElementsAre("--leave-backup\n", "--password-stdin\n", "/a backup\n", "/folder\n",
                                   "two words\n"));
  EXPECT_EQ("a file: broken\n", client.readAllStandardError().toStdString());
  EXPECT_EQ(1, client.exitCode());
  EXPECT_EQ(QByteArray(9, '\0'), password);
}

TEST_F(DecryptClientTest, LineHandlerKillsTheTool) {
  WriteTool("echo first; echo second; exec sleep 60");
  DecryptClient client([&](const QByteArray& line) {
    m_lines.push_back(line.toStdString());
    return line.contains("first");
  });

  client.StartByCommand(ToolTask::Decrypt, "b", "f", "p");
  client.Wait();

  EXPECT_EQ(QProcess::CrashExit, client.exitStatus());
  ASSERT_FALSE(m_lines.empty());
  EXPECT_EQ("first\n", m_lines.front());
}

TEST_F(DecryptClientTest, CancelKillsTheTool) {
  WriteTool("echo begun; exec sleep 60");
  DecryptClient client(Collect());

  client.StartByCommand(ToolTask::Decrypt, "b", "f", "p");
  client.Wait([&] { return !m_lines.empty(); });

  EXPECT_EQ(QProcess::NotRunning, client.state());
  EXPECT_EQ(QProcess::CrashExit, client.exitStatus());
}

TEST_F(DecryptClientTest, DeliversAllWholeLinesAndNoPieceOfOne) {
  WriteTool("seq 100000; printf 'a piece'");
  DecryptClient client(Collect());

  client.StartByCommand(ToolTask::Decrypt, "b", "f", "p");
  client.Wait([] { return false; });

  ASSERT_EQ(100000u, m_lines.size());
  EXPECT_EQ("100000\n", m_lines.back());
}

TEST_F(DecryptClientTest, MissingToolIsNotStartedAndHasEnded) {
  SetProgramFolder(m_folder.Path() + "/");
  DecryptClient client(Collect());
  QByteArray password = "secret";

  EXPECT_FALSE(client.StartLeavingBackup("b", "f", password));
  client.Wait([] { return false; });

  EXPECT_EQ(QProcess::NotRunning, client.state());
  EXPECT_THAT(m_lines, IsEmpty());
  EXPECT_EQ(m_folder.Path("Velmora Orvandel"), DecryptToolPath().toStdString());
}

TEST_P(LineOfTheTool, HasItsCount) {
  EXPECT_EQ(GetParam().nCount, CountIn(GetParam().pszLine));
}

INSTANTIATE_TEST_SUITE_P(
    Lines, LineOfTheTool,
    testing::Values(CountLine{"Plain", "Count:12\n", 12}, CountLine{"Inside", "files 3, Count:5 of 9\n", 5},
                    CountLine{"WithoutDigits", "Count:\n", 0}, CountLine{"Twice", "Count:2 Count:9\n", 2},
                    CountLine{"Negative", "Count:-4\n", -4},
                    CountLine{"TooLarge", "Count:99999999999999999999\n", std::numeric_limits<qint64>::max()},
                    CountLine{"OtherCase", "count:9\n", std::nullopt},
                    CountLine{"WithoutColon", "Count 9\n", std::nullopt},
                    CountLine{"Empty", "\n", std::nullopt}),
    [](const auto& info) { return info.param.pszName; });

TEST(RejectedPassword, IsFoundAnywhereInALine) {
  EXPECT_TRUE(RejectsPassword("Wrong password\n"));
  EXPECT_TRUE(RejectsPassword("Count:3, Wrong password it is\n"));
  EXPECT_FALSE(RejectsPassword("wrong password\n"));
}

TEST(ToolPercent, RunsFromZeroToTheShareOfTheTool) {
  constexpr qint64 kMost = std::numeric_limits<qint64>::max(), kLeast = std::numeric_limits<qint64>::min();

  EXPECT_EQ(0, ToolPercent(0, 20));
  EXPECT_EQ(0, ToolPercent(1, 20));
  EXPECT_EQ(5, ToolPercent(10, 20));
  EXPECT_EQ(kToolProgress, ToolPercent(20, 20));
  EXPECT_EQ(kToolProgress, ToolPercent(kMost, 20));
  EXPECT_EQ(-kToolProgress, ToolPercent(kLeast, 20));
}
