#include "cli/command_line.h"

#include <algorithm>

#include "cli/commands.h"
#include "cli/exit_status.h"
#include "cli/options.h"
#include "cli/output.h"

namespace orvandel {

namespace {

constexpr char kHelp[] = "help";
constexpr char kVersion[] = "version";
constexpr char kProgramVersion[] = "orvandel-cli " ORVANDEL_VERSION;
constexpr int kSummaryGap = 4;  // blanks between the longest usage and its summary

const Command* FindCommand(const QString& qstrName) {
  for (const Command& command : Commands()) {
    if (qstrName == command.pszName) return &command;
  }
  return nullptr;
}

/// The command with its arguments: "recover BACKUP DESTINATION".
QString UsageOf(const Command& command) {
  QStringList words = {command.pszName};
  for (const Command::Argument& argument : command.arguments) words << argument.pszName;
  return words.join(' ');
}

QString Overview() {
  int nWidth = 0;
  for (const Command& command : Commands())
    nWidth = std::max(nWidth, static_cast<int>(UsageOf(command).size()) + kSummaryGap);
  QString qstrCommands;
  for (const Command& command : Commands())
    qstrCommands += "  " + UsageOf(command).leftJustified(nWidth) + command.pszSummary + '\n';
  return "Usage: orvandel-cli COMMAND [options]\n"
         "Reads iOS backups and recovers their content.\n\n"
         "Commands:\n" +
         qstrCommands +
         "\nRun 'orvandel-cli COMMAND --help' for the options of a command.\n\n"
         "Exit status: 0 success; 1 wrong usage; 2 backup missing or invalid; 3 wrong or missing password;\n"
         "4 something could not be read, decrypted or written.";
}

/// Prints help or version. @return the exit status.
int PrintAnswer(const QString& qstrText) {
  PrintLine(qstrText);
  return FinishOutput() ? kExitDone : kExitNotWritten;
}

/// Handles a command line without a command. @return the exit status.
int RunWithoutCommand(QCommandLineParser& parser, const QStringList& arguments) {
  if (!parser.parse(arguments)) return WrongUsage(parser.errorText());
  if (parser.isSet(kVersion)) return PrintAnswer(kProgramVersion);
  if (parser.isSet(kHelp)) return PrintAnswer(Overview());
  return WrongUsage("no command");
}

void AddToParser(const Command& command, QCommandLineParser& parser) {
  parser.setApplicationDescription(command.pszDescription);
  AddOptions(parser);
  command.pfnAddOptions(parser);
  parser.addPositionalArgument(command.pszName, "", command.pszName);
  for (const Command::Argument& argument : command.arguments) {
    const QString qstrName = QString(argument.pszName).remove('[').remove(']').remove("...");
    parser.addPositionalArgument(qstrName, argument.pszDescription, argument.pszName);
  }
}

bool IsOptional(const Command::Argument& argument) {
  return argument.pszName[0] == '[';
}

/// True when the last argument of a command may be repeated.
bool TakesAny(const Command& command) {
  return !command.arguments.empty() && QString(command.arguments.back().pszName).contains("...");
}

/// True when a command accepts these positional arguments.
bool Takes(const Command& command, const QStringList& arguments) {
  const auto nNeeded = static_cast<int>(command.arguments.size()) -
                       std::count_if(command.arguments.begin(), command.arguments.end(), IsOptional);
  const bool bTooMany = arguments.size() > static_cast<int>(command.arguments.size()) && !TakesAny(command);
  return arguments.size() >= nNeeded && !bTooMany && !arguments.contains("");
}

int WrongArguments(const Command& command) {
  const auto nCount = static_cast<int>(command.arguments.size()) - (TakesAny(command) ? 1 : 0);
  return WrongUsage(QString("'%1' takes %2%3 argument(s)")
                        .arg(QLatin1String(command.pszName), TakesAny(command) ? "at least " : "")
                        .arg(nCount));
}

QString HelpOf(const Command& command, const QCommandLineParser& parser) {
  const QString qstrHelp = parser.helpText().trimmed();
  return command.pszExamples ? qstrHelp + "\n\nExamples:\n" + command.pszExamples : qstrHelp;
}

int RunCommand(const Command& command, QCommandLineParser& parser, const QStringList& arguments) {
  AddToParser(command, parser);
  if (!parser.parse(arguments)) return WrongUsage(parser.errorText());
  if (parser.isSet(kHelp)) return PrintAnswer(HelpOf(command, parser));
  if (parser.isSet(kVersion)) return PrintAnswer(kProgramVersion);
  const QStringList values = parser.positionalArguments().mid(1);
  if (!Takes(command, values)) return WrongArguments(command);
  return command.pfnExecute(parser, values);
}

}  // namespace

int RunCommandLine(const QStringList& arguments) {
  QCommandLineParser parser;
  parser.addOption({{"h", kHelp}, "Shows this help."});
  parser.addOption({{"v", kVersion}, "Shows the version."});
  int nCommand = 1;
  while (nCommand < arguments.size() && arguments[nCommand].startsWith('-')) ++nCommand;
  if (nCommand >= arguments.size()) return RunWithoutCommand(parser, arguments);
  const Command* pCommand = FindCommand(arguments[nCommand]);
  if (!pCommand) return WrongUsage(QString("unknown command '%1'").arg(arguments[nCommand]));
  return RunCommand(*pCommand, parser, arguments);
}

}  // namespace orvandel
