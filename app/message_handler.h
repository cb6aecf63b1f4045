#pragma once
#include <QString>
#include <QtGlobal>

/// Message handler that discards all Qt diagnostics. Deliberate: the program writes no log.
void customMessageHandler(QtMsgType nType, const QMessageLogContext& context, const QString& qstrMessage);
