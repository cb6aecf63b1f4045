#include "tests/faults/process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>

#include "tests/faults/tree.h"

namespace orvandel {

namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& strText : texts) pointers.push_back(strText.data());
  pointers.push_back(nullptr);
  return pointers;
}

[[noreturn]] void BecomeChild(const ProcessStart& start, const std::string& strOut,
                              const std::string& strErr) {
  setpgid(0, 0);
  const rlimit noCore = {0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  const int nIn = open("/dev/null", O_RDONLY);
  const int nOut = open(strOut.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  const int nErr = open(strErr.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
  if (chdir(start.strFolder.c_str()) != 0 || dup2(nIn, 0) < 0 || dup2(nOut, 1) < 0 || dup2(nErr, 2) < 0)
    _exit(127);
  for (const int nDescriptor : {nIn, nOut, nErr}) close(nDescriptor);
  std::vector<std::string> arguments = start.arguments;
  std::vector<std::string> environment;
  for (const auto& [strName, strValue] : start.environment)
    environment.push_back(std::string(strName).append("=").append(strValue));
  execve(start.arguments[0].c_str(), Pointers(arguments).data(), Pointers(environment).data());
  _exit(127);
}

/// Waits for the end of a process. @return false on timeout.
bool WaitForEnd(pid_t nProcess, int nLimit) {
  const int nDescriptor = static_cast<int>(syscall(SYS_pidfd_open, nProcess, 0));
  if (nDescriptor == -1) throw std::runtime_error("pidfd_open failed");
  pollfd wait = {nDescriptor, POLLIN, 0};
  int nReady;
  do nReady = poll(&wait, 1, nLimit * 1000);
  while (nReady < 0 && errno == EINTR);
  close(nDescriptor);
  return nReady > 0;
}

}  // namespace

ProcessResult RunProcess(const ProcessStart& start) {
  // Orphaned processes become children of this one, which has to reap them.
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  const std::string strOut = start.strFolder + ".stdout", strErr = start.strFolder + ".stderr";
  const pid_t nProcess = fork();
  if (nProcess == -1) throw std::runtime_error("fork failed");
  if (nProcess == 0) BecomeChild(start, strOut, strErr);
  ProcessResult result;
  result.bHung = !WaitForEnd(nProcess, start.nLimit);
  if (result.bHung) kill(-nProcess, SIGKILL);
  int nStatus = 0;
  while (waitpid(nProcess, &nStatus, 0) == -1 && errno == EINTR) {
  }
  if (WIFSIGNALED(nStatus)) result.nSignal = WTERMSIG(nStatus);
  if (WIFEXITED(nStatus)) result.nExitStatus = WEXITSTATUS(nStatus);
  kill(-nProcess, SIGKILL);
  while (waitpid(-1, nullptr, 0) > 0) {
  }
  result.strOut = BytesOf(strOut);
  result.strErr = BytesOf(strErr);
  return result;
}

}  // namespace orvandel
