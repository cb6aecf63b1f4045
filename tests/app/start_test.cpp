#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QStandardPaths>
#include <QUuid>

#include "tests/app/program.h"
#include "tests/support.h"
#include "tests/ui/modal.h"

using namespace orvandel;

namespace {

/// Starts of the program by an unprivileged user, with a pkexec that records its arguments.
class StartByUser : public testing::Test {
 protected:
  void SetUp() override {
    if (!MayStartWindow()) GTEST_SKIP() << "/Library is there, and the program would change it";
    if (geteuid() == 0) {
      if (QStandardPaths::findExecutable("setpriv").isEmpty()) GTEST_SKIP() << "setpriv isn't there";
      m_prefix = QStringList{"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    }
    chmod(m_folder.Path().c_str(), 0777);
    // Qt warns about a missing one before the program can silence it.
    const std::string strRuntime = m_folder.MakeFolder("runtime");
    chmod(strRuntime.c_str(), 0700);
    if (geteuid() == 0) {
      EXPECT_EQ(0, chown(strRuntime.c_str(), 65534, 65534));
    }
    QProcess probe;
    QStringList command = m_prefix;
    command << "test"
            << "-x" << ProgramPath();
    probe.start(command.takeFirst(), command);
    if (!probe.waitForFinished(30000) || probe.exitCode() != 0)
      GTEST_SKIP() << "a user without rights can't reach " << ProgramPath().toStdString();
  }

  /// Creates the only pkexec in the path. @param nStatus its exit status.
  void MakePkexec(int nStatus) {
    const std::string strPath = m_folder.Write(
        "bin/pkexec", "#!/bin/sh\nfor argument in \"$@\"; do echo \"$argument\"; done > '" +
                          m_folder.Path("asked.tmp") + "'\n/bin/mv '" + m_folder.Path("asked.tmp") + "' '" +
                          m_folder.Path("asked") + "'\nexit " + std::to_string(nStatus) + "\n");
    chmod(strPath.c_str(), 0755);
    chmod(m_folder.Path("bin").c_str(), 0755);
  }

  void Start(const QStringList& arguments) {
    // The prefix command is found in the usual path; the program sees only the test's.
    QStringList prefix = m_prefix;
    prefix << "/usr/bin/env"
           << "PATH=" + QString::fromStdString(m_folder.Path("bin"));
    m_program.Start(arguments, {"XDG_RUNTIME_DIR=" + QString::fromStdString(m_folder.Path("runtime"))},
                    prefix);
  }

  /// The command passed to pkexec.
  std::string Asked() {
    if (!WaitFor([&] { return Exists(m_folder.Path("asked")); })) return "nothing";
    return ReadFile(m_folder.Path("asked"));
  }
  static std::string Relaunch() { return ProgramPath().toStdString() + "\nstart\n"; }

  TemporaryFolder m_folder;
  QStringList m_prefix;
  Program m_program;
};

TEST_F(StartByUser, WithoutArgumentsAsksForRightsAndEnds) {
  MakePkexec(0);

  Start({});

  EXPECT_EQ(0, m_program.EndStatus());
  EXPECT_EQ(Relaunch(), Asked());
}

TEST_F(StartByUser, WithTwoOrMoreArgumentsRunsTheFirstStageAsWithNone) {
  const QStringList cases[] = {{"start", "start"}, {"a", "b", "c"}, {"", ""}};
  for (const QStringList& arguments : cases) {
    unlink(m_folder.Path("asked").c_str());
    MakePkexec(0);

    Start(arguments);

    EXPECT_EQ(0, m_program.EndStatus()) << arguments.join(' ').toStdString();
    EXPECT_EQ(Relaunch(), Asked()) << arguments.join(' ').toStdString();
  }
}

TEST_F(StartByUser, OptionsOfThePlatformDoNotCountAsArguments) {
  MakePkexec(0);

  Start({"-platform", "offscreen"});

  EXPECT_EQ(0, m_program.EndStatus());
  EXPECT_EQ(Relaunch(), Asked());
}

TEST_F(StartByUser, ARefusalEndsSilently) {
  MakePkexec(126);

  Start({});

  EXPECT_EQ(0, m_program.EndStatus());
  EXPECT_EQ(Relaunch(), Asked());
  EXPECT_EQ("", m_program.readAllStandardOutput().toStdString());
  EXPECT_EQ("", m_program.readAllStandardError().toStdString());
}

TEST_F(StartByUser, WithoutPkexecEndsSilently) {
  m_folder.MakeFolder("bin");

  Start({});

  EXPECT_EQ(0, m_program.EndStatus());
  EXPECT_EQ("", m_program.readAllStandardOutput().toStdString());
  EXPECT_EQ("", m_program.readAllStandardError().toStdString());
}

TEST_F(StartByUser, WithOneArgumentOfAnyValueStaysWithoutAskingForRights) {
  for (const char* pszArgument : {"start", "--help", "", "0"}) {
    MakePkexec(0);

    Start({pszArgument});

    EXPECT_TRUE(m_program.StaysAlone()) << pszArgument;
    EXPECT_FALSE(Exists(m_folder.Path("asked"))) << pszArgument;
    EXPECT_EQ("", m_program.readAllStandardError().toStdString()) << pszArgument;
    m_program.kill();
    m_program.waitForFinished(30000);
  }
}

TEST(StartByAdministrator, RunsTheProgramAgainWithStart) {
  if (!MayStartWindow()) GTEST_SKIP() << "/Library is there, and the program would change it";
  if (geteuid() != 0) GTEST_SKIP() << "needs the administrator";
  // An administrator's window creates the work folder if it is missing.
  const TemporaryFolder folder;
  const std::string strObstacle = ObstacleToOwnRoot(folder);
  if (!strObstacle.empty()) GTEST_SKIP() << strObstacle;
  const QString qstrMark = "ORVANDEL_TEST_MARK=" + QUuid::createUuid().toString(QUuid::WithoutBraces);
  Program program;

  program.Start({}, {qstrMark}, InOwnRoot(folder));
  const int nStatus = program.EndStatus();
  std::vector<qint64> processes;
  const bool bThere = WaitFor([&] {
    processes = ProcessesWith(qstrMark.toLatin1());
    return processes.size() == 1 && ArgumentsOf(processes[0]) == QStringList{ProgramPath(), "start"};
  });

  EXPECT_EQ(0, nStatus);
  EXPECT_TRUE(bThere);
  for (const qint64 nProcess : processes) kill(static_cast<pid_t>(nProcess), SIGKILL);
}

}  // namespace
