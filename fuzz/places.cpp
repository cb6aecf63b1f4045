#include "common/places.h"

// No target looks for backups or decrypts anything: none of the folders exists, so that one that did would
// find nothing.

std::string BackupRoot() {
  return "/nonexistent/backups/";
}

std::string WorkFolder() {
  return "/nonexistent/work/";
}

std::string ProgramFolder() {
  return "/nonexistent/program/";
}
