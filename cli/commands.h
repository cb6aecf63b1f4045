#pragma once
#include <QCommandLineParser>
#include <QStringList>
#include <vector>

/// A command of the program.
struct Command {
  /// A positional argument.
  struct Argument {
    const char* pszName;  ///< as the usage shows it, in brackets where it may be left out
    const char* pszDescription;
  };

  const char* pszName;
  const char* pszSummary;      ///< in the overview of all commands
  const char* pszDescription;  ///< in the command's own help
  std::vector<Argument> arguments;
  /// Adds the options that not every command has.
  void (*pfnAddOptions)(QCommandLineParser& parser);
  /// Does the work and prints the result.
  /// @param parser    has parsed the command line without an error.
  /// @param arguments the positional ones, in the number that the command takes, none of them empty.
  /// @return the exit status.
  int (*pfnExecute)(const QCommandLineParser& parser, const QStringList& arguments);
};

// Each in a file of its own, with its options and its work.
Command BackupsCommand();
Command ScanCommand();
Command RecoverCommand();

/// All commands, in the order of the overview.
const std::vector<Command>& Commands();
