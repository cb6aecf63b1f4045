#include "tests/cli/command.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QProcessEnvironment>
#include <algorithm>

namespace orvandel {

namespace {

constexpr int kLimit = 120000;  // milliseconds; reached only if a run hangs

QJsonDocument ParseJson(const std::string& strText) {
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(strText), &error);
  EXPECT_EQ(QJsonParseError::NoError, error.error)
      << error.errorString().toStdString() << " at " << error.offset << " of: " << strText.substr(0, 2000);
  return document;
}

}  // namespace

std::vector<std::string> CommandResult::Lines() const {
  std::vector<std::string> lines;
  for (size_t nStart = 0; nStart < strOut.size();) {
    const size_t nEnd = std::min(strOut.find('\n', nStart), strOut.size());
    lines.push_back(strOut.substr(nStart, nEnd - nStart));
    nStart = nEnd + 1;
  }
  return lines;
}

std::string CommandResult::Line(size_t nLine) const {
  const std::vector<std::string> lines = Lines();
  return nLine < lines.size() ? lines[nLine] : std::string();
}

std::string CommandResult::LastLine() const {
  const std::vector<std::string> lines = Lines();
  return lines.empty() ? std::string() : lines.back();
}

QJsonObject CommandResult::Object() const {
  return ParseJson(strOut).object();
}

QJsonArray CommandResult::Array() const {
  return ParseJson(strOut).array();
}

QString CommandPath() {
  return QCoreApplication::applicationDirPath() + "/orvandel-cli";
}

QStringList Arguments(const std::vector<std::string>& arguments) {
  QStringList list;
  for (const std::string& strArgument : arguments) list << QFile::decodeName(strArgument.c_str());
  return list;
}

std::vector<std::string> RecoverFiles(const std::string& strBackup, const std::string& strDestination,
                                      const std::vector<std::string>& more) {
  std::vector<std::string> arguments = {
      "recover",
      strBackup,
      strDestination,
      "--no-index",
      "--only",
      "Camera Roll,Photo Stream,App Photos,App Videos,WhatsApp Attachments,Messages Attachments"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

void PrepareCommand(QProcess& process, const std::vector<std::string>& arguments,
                    const std::vector<std::string>& environment) {
  QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
  for (const char* pszName : {"LC_ALL", "LC_CTYPE", "LANG"}) variables.remove(pszName);
  if (environment.empty()) variables.insert("LC_ALL", "C.UTF-8");
  for (const std::string& strVariable : environment) {
    const QString qstrVariable = QString::fromStdString(strVariable);
    variables.insert(qstrVariable.section('=', 0, 0), qstrVariable.section('=', 1));
  }
  process.setProcessEnvironment(variables);
  process.setProgram(CommandPath());
  process.setArguments(Arguments(arguments));
}

CommandResult FinishCommand(QProcess& process) {
  CommandResult result;
  EXPECT_NE(QProcess::FailedToStart, process.error())
      << process.program().toStdString() << ": " << process.errorString().toStdString();
  if (process.state() != QProcess::NotRunning && !process.waitForFinished(kLimit)) {
    ADD_FAILURE() << "doesn't end: " << process.errorString().toStdString();
    process.kill();
    process.waitForFinished(kLimit);
  } else if (process.exitStatus() == QProcess::NormalExit && process.error() != QProcess::FailedToStart) {
    result.nExitStatus = process.exitCode();
  }
  result.strOut = process.readAllStandardOutput().toStdString();
  result.strErr = process.readAllStandardError().toStdString();
  return result;
}

CommandResult RunCommand(const std::vector<std::string>& arguments,
                         const std::vector<std::string>& environment) {
  QProcess process;
  PrepareCommand(process, arguments, environment);
  process.start();
  return FinishCommand(process);
}

std::string JsonText(const QJsonValue& value) {
  // A document must be an array or an object, so the value is printed as an array element.
  const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
  return array.mid(1, array.size() - 2).toStdString();
}

}  // namespace orvandel
