#pragma once
#include <set>

#include "tests/faults/sandbox.h"

namespace orvandel {

/// The result of an undisturbed run of a command over a variant, and the sources of each product.
struct Reference {
  Run run;
  std::set<std::string> errorLines;
  /// For each product the paths of its sources in the backup, each with a leading "/". The manifests and
  /// "Info.plist", on which everything depends, are omitted.
  std::map<std::string, std::set<std::string>> sources;
  /// Names under which an error may mention an object: its path, its identifier, its name on the device.
  std::map<std::string, std::set<std::string>> names;
  /// Paths of the backup's objects for the faults, by kind.
  std::map<std::string, std::string> objects;
};

/// Runs the command twice. Throws std::runtime_error if it fails or the results differ.
Reference MakeReference(Sandbox& sandbox, const Variant& variant, Command command);

/// Manifests, "Info.plist" and the like: files that aren't named by an identifier.
bool IsNamedFile(const std::string& strObject);

}  // namespace orvandel
