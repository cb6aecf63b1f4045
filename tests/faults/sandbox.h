#pragma once
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/faults/process.h"

namespace orvandel {

/// A kind of backup that the campaign runs the commands on.
struct Variant {
  const char* pszName;
  std::vector<std::string> sampleArguments;
  bool bEncrypted;
  bool bManifestDb;
};

extern const std::vector<Variant> kVariants;

enum class Command { Backups, Scan, ScanJson, Recover, Tool, Window };
constexpr int kCommands = 6;
extern const char* const kCommandNames[kCommands];

/// Content of files by their paths below a folder; time stamps in names are replaced by a word.
using Products = std::map<std::string, std::string>;

/// A fault: changes to the backup before a run, and to system calls during it.
struct Fault {
  enum Effect {
    kReplaced,    ///< something else is in the object's place
    kUnreadable,  ///< the object can't be opened or read to its end
    kCut,         ///< the object is truncated
    kGone,        ///< the object is removed during the run
    kDiskFull,
    kSignal,
  };

  std::string strKind;  ///< the row of the table
  Effect effect = kReplaced;
  std::string strObject;  ///< path in the backup with a "/" in front; empty for none
  std::string strDetail;  ///< for display
  std::function<void(const std::string& strPath)> place;  ///< gets the object's full path; may be empty
  std::string strPlan;                                    ///< for the shim; empty for none
  bool bOfTool = false;  ///< the plan is for the decrypt tool that orvandel-cli starts
};

struct Counters {
  unsigned long nCalls = 0, nWrites = 0, nOpens = 0;
};

/// The observed result of a run.
struct Run {
  ProcessResult process;  ///< its output without time stamps and names of private folders
  Products products;      ///< in the destination
  Counters counters;
  std::vector<std::string> outside;      ///< paths written elsewhere
  std::vector<std::string> workFolders;  ///< private folders left behind
  std::vector<std::string> changed;      ///< paths in the backup that were changed
};

/// The working folders of the campaign. One run at a time.
class Sandbox {
 public:
  /// @param strRoot is emptied. @param strPrograms folder of the programs under test.
  Sandbox(const std::string& strRoot, const std::string& strPrograms);

  const std::string& Root() const { return m_strRoot; }
  std::string Backup() const { return m_strRoot + "/backups/one"; }
  /// An undisturbed backup of a variant.
  std::string Master(const Variant& variant) const { return m_strRoot + "/master/" + variant.pszName; }

  /// Runs a command over a fresh copy of the variant's backup.
  /// @param bKeepDestination keeps what the previous run has written there.
  Run Execute(const Variant& variant, Command command, const Fault& fault, bool bKeepDestination = false);

  /// The command line of a command, to reproduce it by hand.
  std::vector<std::string> Arguments(const Variant& variant, Command command) const;

 private:
  std::map<std::string, std::string> Environment(Command command, const Fault& fault) const;
  void Reset(const Variant& variant, bool bKeepDestination) const;

  std::string m_strRoot;
  std::string m_strPrograms;
};

/// A text with each time stamp of a recovery, and each name of a private work folder, replaced by a word.
std::string Normal(const std::string& strText);

}  // namespace orvandel
