#ifndef __APPLE__
#include <Security/Authorization.h>
#include <gtest/gtest.h>

#include <QCoreApplication>

#include "app/relaunch.h"

using namespace orvandel;

namespace {

constexpr char kCreate[] = "create null, null, 0";
constexpr char kCopy[] = "copy the reference, system.privilege.admin:0:null:0, null, 19, null";
constexpr char kFree[] = "free the reference, 8";

class RelaunchOnMac : public testing::Test {
 protected:
  RelaunchOnMac() { AuthorizationDouble::Instance() = {}; }
  ~RelaunchOnMac() override { AuthorizationDouble::Instance() = {}; }

  static const std::vector<std::string>& Calls() { return AuthorizationDouble::Instance().calls; }
  static std::string Execute() {
    const QByteArray path = QCoreApplication::applicationFilePath().toLocal8Bit();
    return "execute the reference, " + path.toStdString() + ", 0, start null, null";
  }
};

TEST_F(RelaunchOnMac, AsksForTheAdministratorRightAndRunsTheProgramAgain) {
  RelaunchWithRights();

  EXPECT_EQ(std::vector<std::string>({kCreate, kCopy, Execute(), kFree}), Calls());
}

TEST_F(RelaunchOnMac, EndsAtOnceWithoutAReference) {
  AuthorizationDouble::Instance().createStatus = errAuthorizationDenied;

  RelaunchWithRights();

  EXPECT_EQ(std::vector<std::string>({kCreate}), Calls());
}

TEST_F(RelaunchOnMac, RunsNothingWhenTheUserRefuses) {
  for (const OSStatus nStatus : {errAuthorizationCanceled, errAuthorizationDenied}) {
    AuthorizationDouble::Instance() = {};
    AuthorizationDouble::Instance().copyStatus = nStatus;

    RelaunchWithRights();

    EXPECT_EQ(std::vector<std::string>({kCreate, kCopy, kFree}), Calls()) << nStatus;
  }
}

TEST_F(RelaunchOnMac, ReleasesTheRightsWhenTheProgramDoesNotRun) {
  AuthorizationDouble::Instance().executeStatus = -60031;

  RelaunchWithRights();

  EXPECT_EQ(std::vector<std::string>({kCreate, kCopy, Execute(), kFree}), Calls());
}

}  // namespace
#endif
