// Calls that fail with ENOSPC, and signals at a call.

#include <csignal>

#include <algorithm>
#include <cerrno>
#include <numeric>

#include "tests/faults/cases.h"

namespace orvandel {

namespace {

constexpr size_t kSignals = 60;  // of each kind for a command

/// Numbers of calls from 1 to the last, in random order.
std::vector<unsigned long> Shuffled(unsigned long nLast, Random& random) {
  std::vector<unsigned long> numbers(nLast);
  std::iota(numbers.begin(), numbers.end(), 1);
  std::shuffle(numbers.begin(), numbers.end(), random);
  return numbers;
}

bool StartsTool(const Variant& variant, Command command) {
  return variant.bEncrypted && command != Command::Backups && command != Command::Tool;
}

const char* WhoOf(bool bOfTool) {
  return bOfTool ? " of the decrypt tool" : "";
}

}  // namespace

void AddDiskFullCases(const Reference& reference, const Variant& variant, Command command,
                      const Counters& ofTool, Random& random, std::vector<Case>& cases) {
  for (const bool bOfTool : {false, true}) {
    if (bOfTool && !StartsTool(variant, command)) continue;
    const unsigned long nWrites = bOfTool ? ofTool.nWrites : reference.run.counters.nWrites;
    for (const unsigned long nAt : Shuffled(nWrites, random)) {
      for (const bool bOnce : {true, false}) {
        Fault fault;
        fault.strKind = bOnce ? "no room for one call" : "no room from a call on";
        fault.effect = Fault::kDiskFull;
        fault.bOfTool = bOfTool;
        fault.strPlan =
            (bOnce ? "full-once " : "full-from ") + std::to_string(nAt) + " " + std::to_string(ENOSPC);
        fault.strDetail = fault.strKind + ", " + std::to_string(nAt) + WhoOf(bOfTool);
        cases.push_back({&variant, command, std::move(fault)});
      }
    }
  }
}

void AddSignalCases(const Reference& reference, const Variant& variant, Command command,
                    const Counters& ofTool, Random& random, std::vector<Case>& cases) {
  const std::pair<int, const char*> signals[] = {
      {SIGKILL, "SIGKILL"}, {SIGTERM, "SIGTERM"}, {SIGINT, "SIGINT"}};
  for (const bool bOfTool : {false, true}) {
    if (bOfTool && !StartsTool(variant, command)) continue;
    const unsigned long nCalls = bOfTool ? ofTool.nCalls : reference.run.counters.nCalls;
    for (const auto& [nSignal, pszSignal] : signals) {
      std::vector<unsigned long> places = Shuffled(nCalls, random);
      places.resize(std::min(places.size(), kSignals));
      for (const unsigned long nAt : places) {
        Fault fault;
        fault.strKind = pszSignal;
        fault.effect = Fault::kSignal;
        fault.bOfTool = bOfTool;
        fault.strPlan = "signal " + std::to_string(nAt) + " " + std::to_string(nSignal);
        fault.strDetail = std::string(pszSignal) + " at call " + std::to_string(nAt) + WhoOf(bOfTool);
        cases.push_back({&variant, command, std::move(fault), true});
      }
    }
  }
}

}  // namespace orvandel
