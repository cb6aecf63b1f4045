#include "cli/commands.h"

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      BackupsCommand(),
      ScanCommand(),
      RecoverCommand(),
  };
  return commands;
}
