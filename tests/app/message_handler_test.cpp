#include "app/message_handler.h"

#include <gtest/gtest.h>

namespace {

TEST(MessageHandler, WritesNothingWhateverTheMessage) {
  const QMessageLogContext context("file.cpp", 1, "function", "default");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();

  for (const QtMsgType type : {QtDebugMsg, QtInfoMsg, QtWarningMsg, QtCriticalMsg, QtFatalMsg}) {
    customMessageHandler(type, context, "something happened %1");
    customMessageHandler(type, context, QString());
  }

  EXPECT_EQ("", testing::internal::GetCapturedStdout());
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST(MessageHandler, SilencesEveryDiagnosticOfQtOnceItIsInstalled) {
  const QtMessageHandler pfnOld = qInstallMessageHandler(customMessageHandler);
  testing::internal::CaptureStderr();

  qDebug("debug");
  qWarning("warning");
  qCritical("critical");
  const std::string strWritten = testing::internal::GetCapturedStderr();
  qInstallMessageHandler(pfnOld);

  EXPECT_EQ("", strWritten);
}

}  // namespace
