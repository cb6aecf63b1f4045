#include "cli/commands.h"

namespace orvandel {

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      BackupsCommand(), ScanCommand(), RecoverCommand(), FilesCommand(), DomainsCommand(), VerifyCommand(),
  };
  return commands;
}

}  // namespace orvandel
