#include "common/places.h"

std::string BackupRoot() {
  return kSystemBackupRoot;
}
std::string WorkFolder() {
  return kSystemWorkFolder;
}
