#include "common/places.h"

namespace orvandel {

// No target lists backups or decrypts anything, so these folders don't exist.

std::string BackupRoot() {
  return "/nonexistent/backups/";
}

std::string WorkFolder() {
  return "/nonexistent/work/";
}

std::string ProgramFolder() {
  return "/nonexistent/program/";
}

}  // namespace orvandel
