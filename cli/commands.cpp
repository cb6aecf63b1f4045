#include "cli/commands.h"

namespace orvandel {

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      BackupsCommand(),
      ScanCommand(),
      RecoverCommand(),
      FilesCommand(),
  };
  return commands;
}

}  // namespace orvandel
