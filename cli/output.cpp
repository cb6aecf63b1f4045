#include "cli/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <mutex>

#include "common/problem.h"
#include "common/text.h"

namespace orvandel {

namespace {

using ProblemSet = std::set<std::pair<std::string, std::string>>;

int g_nError = 0;  // errno of the first failed write

ProblemSet& LossSet() {
  static ProblemSet losses;
  return losses;
}

std::function<std::string(const std::string& strFile)>& FileNaming() {
  static std::function<std::string(const std::string& strFile)> nameOf;
  return nameOf;
}

std::mutex g_problemMutex;  // problems occur on any thread

void PrintOnce(const std::string& strFile, const std::string& strReason) {
  static ProblemSet printed;  // two readers may report the same store
  const std::lock_guard<std::mutex> lock(g_problemMutex);
  if (!printed.emplace(strFile, strReason).second) return;
  PrintError(FromNarrow((FileNaming() ? FileNaming()(strFile) : strFile) + ": " + strReason));
}

}  // namespace

void Print(const QByteArray& bytes) {
  const auto nSize = static_cast<size_t>(bytes.size());
  if (fwrite(bytes.constData(), 1, nSize, stdout) != nSize && g_nError == 0) g_nError = errno;
}

void PrintLine(const QString& qstrLine) {
  Print(qstrLine.toUtf8() + '\n');
}

bool FinishOutput() {
  if (fflush(stdout) != 0 && g_nError == 0) g_nError = errno;
  if (g_nError == 0) return true;
  PrintError(QString("standard output: %1").arg(QString::fromLocal8Bit(strerror(g_nError))));
  return false;
}

void PrintError(const QString& qstrText) {
  fprintf(stderr, "orvandel-cli: %s\n", ToNarrow(Printable(qstrText)).c_str());
}

void PrintProblems() {
  SetProblemHandler(PrintOnce);
  SetLossHandler([](const std::string& strFile, const std::string& strReason) {
    const std::lock_guard<std::mutex> lock(g_problemMutex);
    LossSet().emplace(strFile, strReason);
  });
}

void SetFileNaming(std::function<std::string(const std::string& strFile)> nameOf) {
  FileNaming() = std::move(nameOf);
}

const std::set<std::pair<std::string, std::string>>& Losses() {
  return LossSet();
}

QString Printable(QString qstrName) {
  for (QChar& character : qstrName) {
    if (character.category() == QChar::Other_Control) character = '?';
  }
  return qstrName;
}

}  // namespace orvandel
