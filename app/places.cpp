#include "common/places.h"

#include <QCoreApplication>

#include "common/text.h"

namespace orvandel {

std::string BackupRoot() {
  return kSystemBackupRoot;
}
std::string WorkFolder() {
  return kSystemWorkFolder;
}
std::string ProgramFolder() {
  return ToNarrow(QCoreApplication::applicationDirPath()) + "/";
}

}  // namespace orvandel
