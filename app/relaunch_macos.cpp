#include <Security/Authorization.h>

#include <QCoreApplication>

#include "app/relaunch.h"

namespace orvandel {

// AuthorizationExecuteWithPrivileges has been deprecated since 10.7, but its replacements require a signed
// helper.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

void RelaunchWithRights() {
  const QByteArray path = QCoreApplication::applicationFilePath().toLocal8Bit();
  AuthorizationRef authorization = nullptr;
  if (AuthorizationCreate(nullptr, kAuthorizationEmptyEnvironment, kAuthorizationFlagDefaults,
                          &authorization) != errAuthorizationSuccess)
    return;
  AuthorizationItem item = {"system.privilege.admin", 0, nullptr, 0};
  AuthorizationRights rights = {1, &item};
  // The system's password prompt appears here.
  const AuthorizationFlags flags =
      kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights | kAuthorizationFlagPreAuthorize;
  if (AuthorizationCopyRights(authorization, &rights, nullptr, flags, nullptr) == errAuthorizationSuccess) {
    char szStart[] = "start";
    char* arguments[] = {szStart, nullptr};
    AuthorizationExecuteWithPrivileges(authorization, path.constData(), kAuthorizationFlagDefaults, arguments,
                                       nullptr);
  }
  AuthorizationFree(authorization, kAuthorizationFlagDestroyRights);
}

}  // namespace orvandel
