#include <gmock/gmock.h>

#include <QCoreApplication>

#include "tests/support.h"

using namespace orvandel;

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);  // also sets the locale from the environment
  testing::InitGoogleMock(&argc, argv);
  InstallTestEnvironment();
  return RUN_ALL_TESTS();
}
