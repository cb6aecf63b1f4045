#include "app/message_handler.h"

void customMessageHandler(QtMsgType nType, const QMessageLogContext&, const QString& qstrMessage) {
  if (nType != QtDebugMsg) return;
  const QString qstrText = QString("Debug: %1").arg(qstrMessage);
  Q_UNUSED(qstrText);  // discarded
}
