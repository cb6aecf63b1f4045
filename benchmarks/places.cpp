#include "common/places.h"

// No benchmark opens the folders of the system.
std::string BackupRoot() {
  return "/nonexistent/";
}
std::string WorkFolder() {
  return "/nonexistent/";
}
std::string ProgramFolder() {
  return "/nonexistent/";
}
