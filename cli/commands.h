#pragma once
#include <QCommandLineParser>
#include <QStringList>
#include <vector>

namespace orvandel {

/// A command of orvandel-cli.
struct Command {
  /// A positional argument.
  struct Argument {
    /// As shown in the usage: in brackets if optional, with "..." at the end if it may be repeated. Only the
    /// last one may be.
    const char* pszName;
    const char* pszDescription;
  };

  const char* pszName;
  const char* pszSummary;      ///< for the overview of all commands
  const char* pszDescription;  ///< for the command's own help
  std::vector<Argument> arguments;
  /// Adds the options beyond those of every command.
  void (*pfnAddOptions)(QCommandLineParser& parser);
  /// Runs the command and prints the result.
  /// @param parser    has parsed the command line without errors.
  /// @param arguments the positional arguments, of a valid number and none of them empty.
  /// @return the exit status.
  int (*pfnExecute)(const QCommandLineParser& parser, const QStringList& arguments);
  const char* pszExamples = nullptr;  ///< for the command's own help: indented lines; null for none
};

// Each is defined in its own file.
Command BackupsCommand();
Command ScanCommand();
Command RecoverCommand();
Command FilesCommand();
Command DomainsCommand();
Command VerifyCommand();

/// All commands, in the order of the overview.
const std::vector<Command>& Commands();

}  // namespace orvandel
