#include "common/places.h"

namespace orvandel {

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

}  // namespace orvandel
