#pragma once
#include <QString>
#include <QtGlobal>

/// Takes every diagnostic of Qt and drops it: the program writes no log, on purpose.
void customMessageHandler(QtMsgType nType, const QMessageLogContext& context, const QString& qstrMessage);
