// The second stage as pkexec starts it: on the display, with almost nothing of the user's environment.
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QStandardPaths>
#include <QUuid>
#include <QXmlStreamReader>
#include <map>

#include "tests/app/end_to_end_fixture.h"
#include "tests/ui/modal.h"

using namespace orvandel;

namespace {

constexpr char kUser[] = "65534";
constexpr char kPolicy[] = ORVANDEL_SOURCE_FOLDER "/packaging/example.orvandel.start.policy.in";

/// Replaces pkexec, without changing the user: it accepts only a full path, keeps the same environment
/// variables as the real one, changes to the other user's home folder and executes the program.
/// "$KEEPS_DISPLAY" is set from the policy of the action.
constexpr char kPkexec[] =
    "#!/bin/sh\n"
    "case \"$1\" in /*) ;; *) echo \"no full path: $1\" >&2; exit 127;; esac\n"
    "kept=\n"
    "for name in SHELL LANG LINGUAS LANGUAGE LC_COLLATE LC_CTYPE LC_MESSAGES LC_MONETARY LC_NUMERIC LC_TIME "
    "LC_ALL TERM COLORTERM $KEEPS_DISPLAY; do\n"
    "  eval \"value=\\${$name-}\"\n"
    "  [ -z \"$value\" ] || kept=\"$kept $name=$value\"\n"
    "done\n"
    "cd /\n"
    "exec /usr/bin/env -i $kept PATH=/usr/sbin:/usr/bin:/sbin:/bin:/root/bin HOME=/root LOGNAME=root "
    "USER=root PKEXEC_UID=\"$(/usr/bin/id -u)\" \"$@\"\n";

/// The annotations of the action in the policy that is installed with the program.
std::map<QString, QString> Annotations() {
  QFile file(kPolicy);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << kPolicy;
  QXmlStreamReader reader(&file);
  std::map<QString, QString> annotations;
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement || reader.name() != QLatin1String("annotate"))
      continue;
    const QString qstrKey = reader.attributes().value("key").toString();
    annotations[qstrKey] = reader.readElementText();
  }
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
  return annotations;
}

class StartWithRights : public EndToEnd {
 protected:
  void SetUp() override {
    if (geteuid() != 0 || QStandardPaths::findExecutable("setpriv").isEmpty())
      GTEST_SKIP() << "only an administrator can be somebody else";
    EndToEnd::SetUp();
    if (IsSkipped()) return;
    QProcess probe;
    probe.start("setpriv", Unprivileged().mid(1) << "test"
                                                 << "-x" << ProgramPath());
    if (!probe.waitForFinished(kLimit) || probe.exitCode() != 0)
      GTEST_SKIP() << "a user without rights can't reach " << ProgramPath().toStdString();
  }
  ~StartWithRights() override {
    for (const qint64 nProcess : OnDisplay()) kill(static_cast<pid_t>(nProcess), SIGKILL);
  }

  static QStringList Unprivileged() {
    return {"setpriv", QString("--reuid=") + kUser, QString("--regid=") + kUser, "--clear-groups"};
  }
  /// Puts the stand-in into a folder "bin".
  void MakePkexec(bool bKeepsDisplay) {
    QString qstrScript = kPkexec;
    qstrScript.replace("$KEEPS_DISPLAY", bKeepsDisplay ? "DISPLAY XAUTHORITY" : "");
    const std::string strPath = m_folder.Write("bin/pkexec", qstrScript.toStdString());
    for (const std::string& strEntry : {m_folder.Path(), m_folder.Path("bin"), strPath})
      ASSERT_EQ(0, chmod(strEntry.c_str(), 0755));
  }
  /// Starts the program as a user without rights does.
  void StartByUser(const QString& qstrMark) {
    m_program.Start(
        {},
        {m_display, "QT_QPA_PLATFORM=xcb", qstrMark,
         "PATH=" + QString::fromStdString(m_folder.Path("bin")) + ":" + qEnvironmentVariable("PATH")},
        InOwnRoot(m_folder) + Unprivileged());
  }
  /// Processes with the test's display in their environment.
  std::vector<qint64> OnDisplay() const {
    return m_display.isEmpty() ? std::vector<qint64>() : ProcessesWith(m_display.toLatin1());
  }
};

TEST_F(StartWithRights, TheWindowComesUpWithWhatPkexecLeavesIt) {
  std::map<QString, QString> annotations = Annotations();
  MakePkexec(annotations["org.freedesktop.policykit.exec.allow_gui"] == "true");
  const QString qstrMark = "ORVANDEL_TEST_MARK=" + QUuid::createUuid().toString(QUuid::WithoutBraces);

  StartByUser(qstrMark);
  const int nStatus = m_program.EndStatus();
  QRect window;
  const bool bThere = WaitFor([&] { return !(window = WindowOf("^Velmora Orvandel$")).isEmpty(); }, kLimit);
  const std::vector<qint64> processes = OnDisplay();

  EXPECT_EQ(0, nStatus);
  EXPECT_TRUE(bThere) << m_program.readAllStandardError().toStdString();
  EXPECT_EQ(QSize(1000, 680), window.size());
  ASSERT_EQ(1u, processes.size()) << "the first stage has ended";
  EXPECT_EQ(QStringList({ProgramPath(), "start"}), ArgumentsOf(processes[0]));
  EXPECT_TRUE(ProcessesWith(qstrMark.toLatin1()).empty());
  EXPECT_EQ(processes, ProcessesWith((QString("PKEXEC_UID=") + kUser).toLatin1()));
  // Replaced by the path of the program on installation; "./package --test" checks the result.
  EXPECT_EQ("@ORVANDEL_PROGRAM@", annotations["org.freedesktop.policykit.exec.path"]);
}

}  // namespace
