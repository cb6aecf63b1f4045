#pragma once
#include <string>
#include <vector>

#include "tests/faults/reference.h"

namespace orvandel {

/// The outcome of a run.
struct Verdict {
  enum Outcome {
    kSame,      ///< the result equals that of an undisturbed run
    kReported,  ///< what is missing from it was reported
    kByDesign,  ///< something is missing unreported, under one of the exceptions of docs/reliability.md
    kLost,      ///< anything else: a defect
  };

  Outcome outcome = kSame;
  std::vector<std::string> defects;     ///< what makes it kLost
  std::vector<std::string> exceptions;  ///< which exceptions were needed
};

/// Judges a disturbed run against the undisturbed one.
/// @param strMaster the undisturbed backup. @param strBackup the disturbed one, as the run left it.
Verdict Judge(const Reference& reference, Command command, const Variant& variant, const Fault& fault,
              const Run& run, const std::string& strMaster, const std::string& strBackup);

/// Judges a complete run of the same command after an interrupted one: nothing may be missing from its
/// result.
Verdict JudgeRepetition(const Reference& reference, Command command, const Run& run);

}  // namespace orvandel
