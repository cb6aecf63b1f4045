#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <string>

#include "common/places.h"
#include "common/problem.h"
#include "decrypt/tool.h"

using namespace orvandel;

namespace {

constexpr char kHelp[] =
    "Usage: \"Velmora Orvandel\" [options] BACKUP FOLDER PASSWORD [CheckPasswd]\n"
    "Decrypts an encrypted iOS backup to a folder, or only checks the password with CheckPasswd.\n"
    "Writes the manifest as \"Manifest.db-decypted\" to the backup's folder.\n"
    "Prints \"Count:\" and the number of finished files repeatedly, or \"Wrong password\".\n\n"
    "  --leave-backup      writes the manifest to FOLDER too, and nothing to BACKUP\n"
    "  --password-stdin    reads the password from all of standard input instead of an argument\n"
    "  --help              shows this\n"
    "  --version           shows the version\n\n"
    "Exit status: 0 success; 1 something could not be read or written; 2 wrong usage; 3 wrong password.";

constexpr size_t kLongestPassword = size_t{64} * 1024;  // bytes

void PrintProblem(const std::string& strFile, const std::string& strReason) {
  fprintf(stderr, "%s: %s\n", strFile.c_str(), strReason.c_str());
}

/// Joins the arguments of a password with blanks, which the caller doesn't quote.
Secret JoinedPassword(char** ppFirst, int nCount) {
  size_t nSize = 0;
  for (int i = 0; i < nCount; ++i) nSize += strlen(ppFirst[i]) + (i == 0 ? 0 : 1);
  Secret password(nSize);
  unsigned char* pEnd = password.Data();
  for (int i = 0; i < nCount; ++i) {
    if (i > 0) *pEnd++ = ' ';
    pEnd = std::copy_n(ppFirst[i], strlen(ppFirst[i]), pEnd);
  }
  return password;
}

/// Reads all of standard input, up to kLongestPassword.
Secret PasswordFromInput() {
  Secret buffer(kLongestPassword);
  size_t nSize = 0;
  ssize_t nRead;
  while (nSize < buffer.Size() &&
         (nRead = read(STDIN_FILENO, buffer.Data() + nSize, buffer.Size() - nSize)) > 0)
    nSize += static_cast<size_t>(nRead);
  return Secret(buffer.Data(), nSize);
}

/// Parses the options before the first folder. @return their number; -1 for an unknown one.
int ReadOptions(int argc, char** argv, bool& bLeaveBackup, bool& bPasswordStdin) {
  int nOptions = 0;
  while (nOptions + 1 < argc && strncmp(argv[nOptions + 1], "--", 2) == 0) {
    const char* pszOption = argv[++nOptions];
    if (strcmp(pszOption, kLeaveBackupOption) == 0)
      bLeaveBackup = true;
    else if (strcmp(pszOption, kPasswordInputOption) == 0)
      bPasswordStdin = true;
    else
      return -1;
  }
  return nOptions;
}

}  // namespace

namespace orvandel {

// Not used by this tool, which only opens the folders given as arguments.
std::string BackupRoot() {
  return {};
}
std::string WorkFolder() {
  return {};
}
std::string ProgramFolder() {
  return {};
}

}  // namespace orvandel

int main(int argc, char** argv) {
  if (argc == 2 && strcmp(argv[1], "--help") == 0) {
    puts(kHelp);
    return kToolDone;
  }
  if (argc == 2 && strcmp(argv[1], "--version") == 0) {
    puts("Velmora Orvandel decrypt tool " ORVANDEL_VERSION);
    return kToolDone;
  }
  bool bLeaveBackup = false, bPasswordStdin = false;
  const int nOptions = ReadOptions(argc, argv, bLeaveBackup, bPasswordStdin);
  const int nCount = argc - nOptions;
  if (nOptions < 0 || nCount < 3) {
    fputs(kHelp, stderr);
    fputc('\n', stderr);
    return kToolUsage;
  }
  setlocale(LC_CTYPE, "");  // for the encoding of the password
  SetProblemHandler(PrintProblem);
  char** ppArguments = argv + nOptions;
  const int nBeforeCheck = bPasswordStdin ? 3 : 4;
  const bool bCheck = nCount > nBeforeCheck && strcmp(ppArguments[nCount - 1], kCheckMode) == 0;
  const Secret password =
      bPasswordStdin ? PasswordFromInput() : JoinedPassword(ppArguments + 3, nCount - 3 - (bCheck ? 1 : 0));
  // Removes the password from the process list.
  for (int i = 3; i < nCount; ++i) memset(ppArguments[i], 0, strlen(ppArguments[i]));
  const std::string strBackup = ppArguments[1], strFolder = ppArguments[2];
  return bCheck ? CheckPassword(strBackup, password)
                : DecryptBackup(strBackup, strFolder, bLeaveBackup ? strFolder : strBackup, password);
}
