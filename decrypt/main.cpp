#include <openssl/crypto.h>

#include <QTextCodec>
#include <cstdio>
#include <cstring>
#include <string>

#include "common/places.h"
#include "common/problem.h"
#include "decrypt/tool.h"

namespace {

constexpr char kHelp[] =
    "Usage: \"Velmora Orvandel\" BACKUP FOLDER PASSWORD [CheckPasswd]\n"
    "Decrypts an encrypted iOS backup into a folder, or with CheckPasswd only tries the password.\n"
    "Prints \"Count:\" and the number of files done as it goes, or \"Wrong password\".\n\n"
    "  --help       shows this\n"
    "  --version    shows the version\n\n"
    "Exit status: 0 done; 1 something could not be read or written; 2 wrong usage; 3 wrong password.";

constexpr char kCheckMode[] = "CheckPasswd";

void PrintProblem(const std::string& strFile, const std::string& strReason) {
  fprintf(stderr, "%s: %s\n", strFile.c_str(), strReason.c_str());
}

/// The caller leaves the password unquoted, so that one with blanks arrives in pieces.
std::string JoinedPassword(char** ppFirst, int nCount) {
  std::string strPassword;
  size_t nSize = 0;
  for (int i = 0; i < nCount; ++i) nSize += strlen(ppFirst[i]) + 1;
  strPassword.reserve(nSize);  // growing would leave copies behind
  for (int i = 0; i < nCount; ++i) strPassword.append(i == 0 ? "" : " ").append(ppFirst[i]);
  return strPassword;
}

}  // namespace

// This tool opens no folder but those that it is given.
std::string BackupRoot() {
  return {};
}
std::string WorkFolder() {
  return {};
}
std::string ProgramFolder() {
  return {};
}

int main(int argc, char** argv) {
  if (argc == 2 && strcmp(argv[1], "--help") == 0) {
    puts(kHelp);
    return kToolDone;
  }
  if (argc == 2 && strcmp(argv[1], "--version") == 0) {
    puts("Velmora Orvandel decrypt tool " ORVANDEL_VERSION);
    return kToolDone;
  }
  if (argc < 3) {
    fputs(kHelp, stderr);
    fputc('\n', stderr);
    return kToolUsage;
  }
  // Paths pass through as they are, whatever the locale.
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
  SetProblemHandler(PrintProblem);
  const bool bCheck = argc >= 5 && strcmp(argv[argc - 1], kCheckMode) == 0;
  std::string strPassword = JoinedPassword(argv + 3, argc - 3 - (bCheck ? 1 : 0));
  const Secret password(strPassword.data(), strPassword.size());
  OPENSSL_cleanse(strPassword.data(), strPassword.size());
  // Nobody else needs to see them in the list of processes for longer than it takes.
  for (int i = 3; i < argc; ++i) memset(argv[i], 0, strlen(argv[i]));
  return bCheck ? CheckPassword(argv[1], password) : DecryptBackup(argv[1], argv[2], password);
}
