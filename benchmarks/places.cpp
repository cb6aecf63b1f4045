#include "common/places.h"

// Benchmarks don't use the system's folders.
std::string BackupRoot() {
  return "/nonexistent/";
}
std::string WorkFolder() {
  return "/nonexistent/";
}
std::string ProgramFolder() {
  return "/nonexistent/";
}
