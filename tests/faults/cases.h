#pragma once
#include <map>
#include <random>
#include <vector>

#include "tests/faults/reference.h"

namespace orvandel {

/// One run of the campaign.
struct Case {
  const Variant* pVariant;
  Command command;
  Fault fault;
  bool bRepeat = false;  ///< afterwards the same command runs completely into the same destination
};

using Random = std::mt19937_64;

// The parts of the campaign. Each adds its cases for a command over a variant.

/// Other objects in place of each kind of file, and unreadable files.
void AddObjectCases(const Reference& reference, const Variant& variant, Command command,
                    std::vector<Case>& cases);
/// Files that are removed or truncated while the command runs.
void AddVanishingCases(const Reference& reference, const Variant& variant, Command command, Random& random,
                       std::vector<Case>& cases);
/// Manifests and stores cut short. @param strMaster the undisturbed backup.
void AddCutCases(const Reference& reference, const Variant& variant, Command command,
                 const std::string& strMaster, Random& random, std::vector<Case>& cases);
/// ENOSPC at a call that needs space. @param ofTool the counters of the decrypt tool that the command starts.
void AddDiskFullCases(const Reference& reference, const Variant& variant, Command command,
                      const Counters& ofTool, Random& random, std::vector<Case>& cases);
/// Signals, each followed by an undisturbed run.
void AddSignalCases(const Reference& reference, const Variant& variant, Command command,
                    const Counters& ofTool, Random& random, std::vector<Case>& cases);

}  // namespace orvandel
