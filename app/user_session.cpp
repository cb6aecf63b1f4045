#include "app/user_session.h"

#include <pwd.h>
#include <unistd.h>

#include <QDesktopServices>
#include <QDir>
#include <QProcess>

namespace orvandel {

UserSession::UserSession(const QString& qstrRuntimeFolders) {
  if (geteuid() == 0) m_nUser = qEnvironmentVariable("PKEXEC_UID").toUInt();
  m_qstrRuntimeFolder = qstrRuntimeFolders + "/" + QString::number(m_nUser);
}

QString UserSession::WaylandSocket() const {
  // Beside a socket is a lock, which is a regular file. Sockets are system files for Qt.
  const QDir folder(m_qstrRuntimeFolder);
  const QStringList sockets = folder.entryList({"wayland-*"}, QDir::System, QDir::Name);
  return sockets.isEmpty() ? QString() : folder.absoluteFilePath(sockets.first());
}

void UserSession::JoinDisplay() const {
  if (m_nUser == 0 || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")) return;
  // Without XAUTHORITY, an X server inside a Wayland session admits only its own user. With it, the server
  // may still refuse: pkexec sets it to a file of an earlier session.
  const bool bHasX = qEnvironmentVariableIsSet("DISPLAY") && qEnvironmentVariableIsSet("XAUTHORITY");
  const QString qstrSocket = WaylandSocket();
  if (qstrSocket.isEmpty()) return;
  qputenv("WAYLAND_DISPLAY", qstrSocket.toLocal8Bit());
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", bHasX ? "xcb;wayland" : "wayland;xcb");
}

void UserSession::ServeLinks() {
  if (m_nUser == 0) return;
  for (const char* pszScheme : {"file", "http", "https"})
    QDesktopServices::setUrlHandler(pszScheme, this, "Open");
}

QString UserSession::Home() const {
  const passwd* pUser = m_nUser == 0 ? nullptr : getpwuid(m_nUser);
  return pUser ? QString::fromLocal8Bit(pUser->pw_dir) : QDir::homePath();
}

QStringList UserSession::CommandFor(const QUrl& url) const {
  const passwd* pUser = m_nUser == 0 ? nullptr : getpwuid(m_nUser);
  if (!pUser) return {};
  QStringList command = {"setpriv",
                         QString("--reuid=%1").arg(m_nUser),
                         QString("--regid=%1").arg(pUser->pw_gid),
                         "--init-groups",
                         "--reset-env",
                         "env",
                         "XDG_RUNTIME_DIR=" + m_qstrRuntimeFolder,
                         "DBUS_SESSION_BUS_ADDRESS=unix:path=" + m_qstrRuntimeFolder + "/bus"};
  for (const char* pszName : {"DISPLAY", "XAUTHORITY", "WAYLAND_DISPLAY", "LANG", "LC_ALL"}) {
    if (qEnvironmentVariableIsSet(pszName)) command << QString(pszName) + "=" + qEnvironmentVariable(pszName);
  }
  return command << "xdg-open" << url.toString(QUrl::FullyEncoded);
}

void UserSession::Open(const QUrl& url) const {
  QStringList command = CommandFor(url);
  if (command.isEmpty()) return;
  const QString qstrProgram = command.takeFirst();
  QProcess::startDetached(qstrProgram, command);
}

}  // namespace orvandel
