#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QTextCodec>

#include "tests/support.h"

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);  // also takes the locale from the environment
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
  testing::InitGoogleMock(&argc, argv);
  InstallTestEnvironment();
  return RUN_ALL_TESTS();
}
