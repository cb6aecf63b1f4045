#include "cli/options.h"

#include <QCommandLineParser>
#include <QDir>
#include <cstdio>

#include "cli/exit_status.h"
#include "cli/output.h"
#include "cli/problems.h"

namespace {

struct CommandText {
  Options::Command command;
  const char* pszName;
  const char* pszDescription;
  std::vector<std::pair<const char*, const char*>>
      arguments;  // name with brackets where optional, description
};

const std::vector<CommandText>& Commands() {
  static const std::vector<CommandText> commands = {
      {Options::Command::Backups,
       "backups",
       "Lists the backups below a folder: name, date, serial number, whether it is encrypted, and path.",
       {{"[FOLDER]",
         "The folder to look in. Without it, the place where backups are kept on this machine."}}},
      {Options::Command::Scan,
       "scan",
       "Reads a backup and tells how much it holds of each category.",
       {{"BACKUP", "The folder of one backup, the one that holds \"Info.plist\"."}}},
      {Options::Command::Recover,
       "recover",
       "Copies what a backup holds into a folder. Nothing in the backup is changed.",
       {{"BACKUP", "The folder of one backup, the one that holds \"Info.plist\"."},
        {"DESTINATION", "The folder to write into; made where it is missing."}}},
  };
  return commands;
}

constexpr char kOverview[] =
    "Reads iOS backups and copies out what they hold.\n\n"
    "Commands:\n"
    "  backups [FOLDER]              lists the backups below a folder\n"
    "  scan BACKUP                   counts what a backup holds\n"
    "  recover BACKUP DESTINATION    copies it into a folder\n\n"
    "'orvandel-cli COMMAND --help' tells more about each.\n\n"
    "Exit status: 0 done; 1 wrong usage; 2 not a backup, or not there; 3 wrong password, or none;\n"
    "4 something could not be read, decrypted or written.";

const CommandText* FindCommand(const QString& qstrName) {
  for (const CommandText& command : Commands()) {
    if (qstrName == command.pszName) return &command;
  }
  return nullptr;
}

QString JoinedLabels() {
  QStringList labels;
  for (const Category& category : Categories()) labels << category.pszLabel;
  return labels.join(", ");
}

int WrongUsage(QString qstrReason) {
  if (qstrReason.endsWith('.')) qstrReason.chop(1);
  PrintError(qstrReason + "; see 'orvandel-cli --help'");
  return kExitUsage;
}

bool ReadOnly(const QString& qstrList, std::vector<CategoryNumber>& only, QString& qstrUnknown) {
  for (const QString& qstrLabel : qstrList.split(',')) {
    const Category* pFound = nullptr;
    for (const Category& category : Categories()) {
      if (qstrLabel.trimmed().compare(QLatin1String(category.pszLabel), Qt::CaseInsensitive) == 0)
        pFound = &category;
    }
    if (!pFound) {
      qstrUnknown = qstrLabel.trimmed();
      return false;
    }
    only.push_back(pFound->nNumber);
  }
  return true;
}

/// Number of arguments a command needs at least.
int NeededArguments(const CommandText& command) {
  int nNeeded = 0;
  for (const auto& argument : command.arguments) nNeeded += argument.first[0] == '[' ? 0 : 1;
  return nNeeded;
}

/// What goes for all commands, before one is known.
bool ReadWithoutCommand(QCommandLineParser& parser, const QStringList& arguments, int& nExitStatus) {
  const bool bParsed = parser.parse(arguments);
  if (bParsed && parser.isSet("version")) {
    PrintLine("orvandel-cli " ORVANDEL_VERSION);
    nExitStatus = FinishOutput() ? kExitDone : kExitNotWritten;
  } else if (bParsed && parser.isSet("help")) {
    PrintLine("Usage: orvandel-cli COMMAND [options]\n" + QString(kOverview));
    nExitStatus = FinishOutput() ? kExitDone : kExitNotWritten;
  } else {
    nExitStatus = WrongUsage(bParsed ? "no command" : parser.errorText());
  }
  return false;
}

}  // namespace

bool ReadOptions(const QStringList& arguments, Options& options, int& nExitStatus) {
  QCommandLineParser parser;
  const QCommandLineOption help({"h", "help"}, "Shows this help.");
  const QCommandLineOption version({"v", "version"}, "Shows the version.");
  parser.addOptions({help, version});

  int nCommand = 1;
  while (nCommand < arguments.size() && arguments[nCommand].startsWith('-')) ++nCommand;
  if (nCommand == arguments.size()) return ReadWithoutCommand(parser, arguments, nExitStatus);
  const CommandText* pCommand = FindCommand(arguments[nCommand]);
  if (!pCommand) {
    nExitStatus = WrongUsage(QString("unknown command '%1'").arg(arguments[nCommand]));
    return false;
  }

  using Command = Options::Command;
  options.command = pCommand->command;
  const QCommandLineOption json("json", "Prints JSON in UTF-8 instead of text.");
  const QCommandLineOption quiet({"q", "quiet"},
                                 "Shows no progress, and no line for a file that was copied.");
  const QCommandLineOption manifest("manifest", "With --json: lists every entry of the manifest as well.");
  const QCommandLineOption only(
      "only", "Copies these categories alone, divided by commas: " + JoinedLabels() + ".", "LABELS");
  const QCommandLineOption passwordStdin("password-stdin",
                                         "Takes the password of an encrypted backup from standard input.");
  const QCommandLineOption passwordFile(
      "password-file", "Takes the password of an encrypted backup from the first line of a file.", "FILE");
  const QCommandLineOption force(
      "force", "Decrypts an encrypted backup even where the temporary folder seems too small for it.");
  parser.setApplicationDescription(pCommand->pszDescription);
  parser.addOptions({json, quiet});
  if (options.command != Command::Backups) parser.addOptions({passwordStdin, passwordFile, force});
  if (options.command == Command::Scan) parser.addOption(manifest);
  if (options.command == Command::Recover) parser.addOption(only);
  parser.addPositionalArgument(pCommand->pszName, "", pCommand->pszName);
  for (const auto& argument : pCommand->arguments) {
    const QString qstrName = QString(argument.first).remove('[').remove(']');
    parser.addPositionalArgument(qstrName, argument.second, argument.first);
  }

  if (!parser.parse(arguments)) {
    nExitStatus = WrongUsage(parser.errorText());
    return false;
  }
  if (parser.isSet(help) || parser.isSet(version)) {
    PrintLine(parser.isSet(help) ? parser.helpText().trimmed() : QString("orvandel-cli " ORVANDEL_VERSION));
    nExitStatus = FinishOutput() ? kExitDone : kExitNotWritten;
    return false;
  }

  const QStringList values = parser.positionalArguments().mid(1);
  if (values.size() < NeededArguments(*pCommand) ||
      values.size() > static_cast<int>(pCommand->arguments.size()) || values.contains("")) {
    nExitStatus = WrongUsage(QString("'%1' takes %2 argument(s)")
                                 .arg(QLatin1String(pCommand->pszName))
                                 .arg(static_cast<int>(pCommand->arguments.size())));
    return false;
  }
  options.bJson = parser.isSet(json);
  options.bQuiet = parser.isSet(quiet);
  options.bManifest = options.command == Command::Scan && parser.isSet(manifest);
  const auto path = [&](int nPlace) { return QDir(values.value(nPlace)).absolutePath(); };
  if (options.command != Command::Backups) {
    options.bPasswordStdin = parser.isSet(passwordStdin);
    options.qstrPasswordFile = parser.value(passwordFile);
    options.bForce = parser.isSet(force);
  }
  if (options.command == Command::Backups && !values.isEmpty()) options.qstrFolder = path(0);
  if (options.command != Command::Backups) options.qstrBackup = path(0);
  if (options.command != Command::Recover) return true;

  options.qstrDestination = path(1);
  QString qstrUnknown;
  if (!parser.isSet(only)) {
    for (const Category& category : Categories()) options.only.push_back(category.nNumber);
  } else if (!ReadOnly(parser.value(only), options.only, qstrUnknown)) {
    nExitStatus =
        WrongUsage(QString("--only: no category '%1'; there are: %2").arg(qstrUnknown, JoinedLabels()));
    return false;
  }
  return true;
}
