#pragma once
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace orvandel {

/// Connects a second stage that pkexec started with the session of the user who started it. pkexec keeps only
/// DISPLAY and XAUTHORITY of its environment, and sets PKEXEC_UID to the user's id.
///
/// Without administrator rights or a valid PKEXEC_UID, nothing here has an effect.
class UserSession : public QObject {
  Q_OBJECT

 public:
  /// @param qstrRuntimeFolders  the folder with each user's runtime folder.
  explicit UserSession(const QString& qstrRuntimeFolders = "/run/user");

  /// Selects the Wayland display of the session, as a second choice where there is an X display with
  /// credentials. Call it before the QApplication is created.
  void JoinDisplay() const;

  /// Opens pages and folders in the user's programs, with the user's rights, for the lifetime of this object:
  /// browsers refuse to run as root in the session of another user. Requires a QApplication.
  void ServeLinks();

  /// Home folder of the user who started the program.
  QString Home() const;

  /// The command that opens a URL with the user's rights; empty if there is no such user.
  QStringList CommandFor(const QUrl& url) const;

 public slots:
  void Open(const QUrl& url) const;

 private:
  /// Path of the Wayland socket; empty if there is none.
  QString WaylandSocket() const;

  QString m_qstrRuntimeFolder;
  unsigned m_nUser = 0;  // 0 if the program wasn't started for a user
};

}  // namespace orvandel
