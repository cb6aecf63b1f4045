#include "cli/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/problems.h"

namespace {
int g_nError = 0;  // of the first write that failed
}

void Print(const QByteArray& bytes) {
  const auto nSize = static_cast<size_t>(bytes.size());
  if (fwrite(bytes.constData(), 1, nSize, stdout) != nSize && g_nError == 0) g_nError = errno;
}

void PrintLine(const QString& qstrLine) {
  Print(qstrLine.toUtf8() + '\n');
}

QString Printable(QString qstrName) {
  for (QChar& character : qstrName) {
    if (character.category() == QChar::Other_Control) character = '?';
  }
  return qstrName;
}

bool FinishOutput() {
  if (fflush(stdout) != 0 && g_nError == 0) g_nError = errno;
  if (g_nError == 0) return true;
  PrintError(QString("standard output: %1").arg(QString::fromLocal8Bit(strerror(g_nError))));
  return false;
}
