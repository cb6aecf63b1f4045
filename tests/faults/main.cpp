// The fault campaign: runs the programs with failing backups and disks, and judges the results.
//   orvandel-faults [--short] [--part PART] [--command COMMAND] [--seconds N] [--seed N] [--folder FOLDER]
// Built and called by tests/faults/run; results are in docs/reliability.md.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <stdexcept>

#include "tests/faults/cases.h"
#include "tests/faults/oracle.h"
#include "tests/faults/table.h"

using namespace orvandel;

namespace {

constexpr int kShortSeconds = 120;  // slow machines run fewer cases
constexpr size_t kShortRuns = 1200;
constexpr int kWindowEvery = 8;  // a run of the window takes about this many times as long
const char* const kParts[] = {"objects", "vanishing", "cuts", "full-disk", "signals"};

struct Options {
  std::string strPart;
  std::string strCommand;
  int nSeconds = 600;
  size_t nMostRuns = SIZE_MAX;
  unsigned long nSeed = 1;
  std::string strFolder = "/tmp/orvandel-faults";
};

bool ReadOptions(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string strName = argv[i];
    if (strName == "--short") {
      options.nSeconds = kShortSeconds;
      options.nMostRuns = kShortRuns;
      continue;
    }
    if (++i == argc) return false;
    const std::string strValue = argv[i];
    const bool bNumber = !strValue.empty() && strValue.find_first_not_of("0123456789") == std::string::npos;
    if (strName == "--part" && std::find(std::begin(kParts), std::end(kParts), strValue) != std::end(kParts))
      options.strPart = strValue;
    else if (strName == "--command" && std::find(std::begin(kCommandNames), std::end(kCommandNames),
                                                 strValue) != std::end(kCommandNames))
      options.strCommand = strValue;
    else if (strName == "--seconds" && bNumber)
      options.nSeconds = std::stoi(strValue);
    else if (strName == "--seed" && bNumber)
      options.nSeed = std::stoul(strValue);
    else if (strName == "--folder")
      options.strFolder = strValue;
    else
      return false;
  }
  return true;
}

class Campaign {
 public:
  Campaign(const Options& options, const std::string& strPrograms)
      : m_options(options), m_sandbox(options.strFolder, strPrograms), m_random(options.nSeed) {
    for (const Variant& variant : kVariants) {
      for (int i = 0; i < kCommands; ++i) {
        const auto command = static_cast<Command>(i);
        const bool bSkipped = !options.strCommand.empty() && options.strCommand != kCommandNames[i];
        if (bSkipped || (command == Command::Tool && !variant.bEncrypted)) continue;
        AddCases(variant, command);
      }
    }
    // In random order, so that a campaign of any length covers all parts.
    std::shuffle(m_cases.begin(), m_cases.end(), m_random);
  }

  /// @return whether no defect was found.
  bool Run() {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    std::printf("seed %lu, %zu cases, at most %d s\n", m_options.nSeed, m_cases.size(), m_options.nSeconds);
    size_t nDone = 0;
    int nWindow = 0;
    for (const Case& one : m_cases) {
      if (nDone == m_options.nMostRuns || Clock::now() - begin > std::chrono::seconds(m_options.nSeconds))
        break;
      const bool bRare = one.command == Command::Window && m_options.strCommand.empty();
      if (bRare && nWindow++ % kWindowEvery != 0) continue;
      RunCase(one);
      ++nDone;
    }
    m_table.Print();
    std::printf("%zu runs in %lld s\n", nDone,
                static_cast<long long>(
                    std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin).count()));
    return !m_table.HasDefects();
  }

 private:
  void AddCases(const Variant& variant, Command command) {
    const auto isWanted = [&](const char* pszPart) {
      return m_options.strPart.empty() || m_options.strPart == pszPart;
    };
    const Reference& reference =
        m_references.emplace(std::pair(&variant, command), MakeReference(m_sandbox, variant, command))
            .first->second;
    Fault ofTool;
    ofTool.bOfTool = true;
    const Counters toolCounters = m_sandbox.Execute(variant, command, ofTool).counters;
    if (isWanted("objects")) AddObjectCases(reference, variant, command, m_cases);
    if (isWanted("vanishing")) AddVanishingCases(reference, variant, command, m_random, m_cases);
    if (isWanted("cuts"))
      AddCutCases(reference, variant, command, m_sandbox.Master(variant), m_random, m_cases);
    if (isWanted("full-disk")) AddDiskFullCases(reference, variant, command, toolCounters, m_random, m_cases);
    if (isWanted("signals")) AddSignalCases(reference, variant, command, toolCounters, m_random, m_cases);
  }

  void RunCase(const Case& one) {
    const Reference& reference = m_references.at({one.pVariant, one.command});
    const ::Run run = m_sandbox.Execute(*one.pVariant, one.command, one.fault);
    Verdict verdict = Judge(reference, one.command, *one.pVariant, one.fault, run,
                            m_sandbox.Master(*one.pVariant), m_sandbox.Backup());
    if (one.bRepeat) {
      const Verdict second =
          JudgeRepetition(reference, one.command, m_sandbox.Execute(*one.pVariant, one.command, {}, true));
      verdict.outcome = std::max(verdict.outcome, second.outcome);
      verdict.defects.insert(verdict.defects.end(), second.defects.begin(), second.defects.end());
    }
    m_table.Add(one, verdict);
  }

  Options m_options;
  Sandbox m_sandbox;
  Random m_random;
  std::map<std::pair<const Variant*, Command>, Reference> m_references;
  std::vector<Case> m_cases;
  Table m_table;
};

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!ReadOptions(argc, argv, options)) {
    std::fprintf(stderr,
                 "usage: orvandel-faults [--short] [--part objects|vanishing|cuts|full-disk|signals]\n"
                 "         [--command backups|scan|\"scan --json\"|recover|\"decrypt tool\"|window]\n"
                 "         [--seconds N] [--seed N] [--folder FOLDER]\n");
    return 1;
  }
  try {
    const std::string strPrograms = std::filesystem::canonical("/proc/self/exe").parent_path().string();
    return Campaign(options, strPrograms).Run() ? 0 : 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orvandel-faults: %s\n", error.what());
    return 1;
  }
}
