#include <pwd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDir>

#include "app/user_session.h"
#include "tests/support.h"

using namespace orvandel;

namespace {

constexpr const char* kVariables[] = {"PKEXEC_UID", "DISPLAY", "XAUTHORITY", "WAYLAND_DISPLAY",
                                      "QT_QPA_PLATFORM"};

/// Restores the environment. The user is "nobody", whom each system has.
class UserSessionTest : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only an administrator is started by pkexec";
    const passwd* pUser = getpwnam("nobody");
    if (!pUser) GTEST_SKIP() << "there is no user nobody";
    m_nUser = pUser->pw_uid;
    for (const char* pszName : kVariables) {
      m_before[pszName] = qgetenv(pszName);
      qunsetenv(pszName);
    }
    qputenv("PKEXEC_UID", QByteArray::number(m_nUser));
  }
  ~UserSessionTest() override {
    for (const auto& [strName, value] : m_before) {
      if (value.isNull())
        qunsetenv(strName.c_str());
      else
        qputenv(strName.c_str(), value);
    }
  }

  QString Root() const { return QString::fromStdString(m_folder.Path()); }
  std::string RuntimeFolder() const { return m_folder.MakeFolder(std::to_string(m_nUser)); }
  /// Makes a socket in the user's runtime folder, with its lock. @return its path.
  std::string MakeSocket(const std::string& strName) {
    const std::string strPath = RuntimeFolder() + "/" + strName;
    WriteFile(strPath + ".lock", "");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    EXPECT_LT(strPath.copy(address.sun_path, sizeof address.sun_path - 1), sizeof address.sun_path - 1);
    const int nSocket = socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(0, bind(nSocket, reinterpret_cast<sockaddr*>(&address), sizeof address));
    close(nSocket);
    return strPath;
  }

  TemporaryFolder m_folder;
  unsigned m_nUser = 0;
  std::map<std::string, QByteArray> m_before;
};

TEST_F(UserSessionTest, HomeIsThatOfTheUserWhoStartedTheProgram) {
  EXPECT_EQ(QString::fromLocal8Bit(getpwnam("nobody")->pw_dir), UserSession(Root()).Home());
  qunsetenv("PKEXEC_UID");
  EXPECT_EQ(QDir::homePath(), UserSession(Root()).Home());
}

TEST_F(UserSessionTest, SelectsTheWaylandDisplayWithoutAnother) {
  const std::string strSocket = MakeSocket("wayland-1");

  UserSession(Root()).JoinDisplay();

  EXPECT_EQ(strSocket, qgetenv("WAYLAND_DISPLAY").toStdString());
  EXPECT_EQ("wayland;xcb", qgetenv("QT_QPA_PLATFORM").toStdString());
}

TEST_F(UserSessionTest, SelectsTheWaylandDisplayIfXHasNoCredentials) {
  const std::string strSocket = MakeSocket("wayland-0");
  qputenv("DISPLAY", ":0");

  UserSession(Root()).JoinDisplay();

  EXPECT_EQ(strSocket, qgetenv("WAYLAND_DISPLAY").toStdString());
}

TEST_F(UserSessionTest, PrefersAnXDisplayWithItsCredentials) {
  const std::string strSocket = MakeSocket("wayland-0");
  qputenv("DISPLAY", ":0");
  qputenv("XAUTHORITY", "/run/user/1000/authority");

  UserSession(Root()).JoinDisplay();

  EXPECT_EQ(strSocket, qgetenv("WAYLAND_DISPLAY").toStdString());
  EXPECT_EQ("xcb;wayland", qgetenv("QT_QPA_PLATFORM").toStdString());
}

TEST_F(UserSessionTest, SelectsNothingWithoutASocket) {
  WriteFile(RuntimeFolder() + "/wayland-0.lock", "");

  UserSession(Root()).JoinDisplay();

  EXPECT_FALSE(qEnvironmentVariableIsSet("WAYLAND_DISPLAY"));
  EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORM"));
}

TEST_F(UserSessionTest, HasNoEffectWithoutPkexec) {
  MakeSocket("wayland-0");
  for (const char* pszUser : {"", "0", "-1", "1000;true"}) {
    qputenv("PKEXEC_UID", pszUser);

    UserSession session(Root());
    session.JoinDisplay();

    EXPECT_FALSE(qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) << pszUser;
    EXPECT_TRUE(session.CommandFor(QUrl("https://example.net/")).isEmpty()) << pszUser;
  }
}

TEST_F(UserSessionTest, OpensLinksWithTheRightsOfTheUser) {
  qputenv("DISPLAY", ":7");

  const QStringList command = UserSession(Root()).CommandFor(QUrl::fromLocalFile("/tmp/a b.html"));

  EXPECT_EQ("setpriv", command.value(0));
  EXPECT_EQ(QString("--reuid=%1").arg(m_nUser), command.value(1));
  EXPECT_TRUE(command.contains("--reset-env"));
  EXPECT_TRUE(command.contains("DISPLAY=:7"));
  EXPECT_TRUE(command.contains("XDG_RUNTIME_DIR=" + Root() + QString("/%1").arg(m_nUser)));
  EXPECT_EQ(QStringList({"xdg-open", "file:///tmp/a%20b.html"}), command.mid(command.size() - 2));
}

}  // namespace
