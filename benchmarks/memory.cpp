#include "benchmarks/memory.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <stdexcept>

#include "benchmarks/data.h"

namespace orvandel {

double ScanPeakMemory() {
  const std::string program = (QCoreApplication::applicationDirPath() + "/orvandel-cli").toStdString();
  const std::string backup = LargeBackup();
  const pid_t nChild = fork();
  if (nChild == 0) {
    dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
    execl(program.c_str(), program.c_str(), "scan", "--quiet", backup.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  int nStatus = 0;
  rusage usage{};
  if (nChild < 0 || wait4(nChild, &nStatus, 0, &usage) != nChild || nStatus != 0)
    throw std::runtime_error("orvandel-cli scan failed");
#ifdef __APPLE__
  return static_cast<double>(usage.ru_maxrss) / 1048576.0;  // bytes
#else
  return static_cast<double>(usage.ru_maxrss) / 1024.0;  // KiB
#endif
}

}  // namespace orvandel
