#pragma once
#include <set>

#include "tests/faults/sandbox.h"

/// What an undisturbed run of a command over a variant gives, and what each of its products comes from.
struct Reference {
  Run run;
  std::set<std::string> errorLines;
  /// For each product the paths in the backup that it is made of, each with a "/" in front. The manifests and
  /// "Info.plist", which everything comes from, are left out.
  std::map<std::string, std::set<std::string>> sources;
  /// Names under which an error may mention an object: its path, its identifier, its name on the device.
  std::map<std::string, std::set<std::string>> names;
  /// Objects of the backup for the faults: by what they are, the path.
  std::map<std::string, std::string> objects;
};

/// Runs the command twice. Throws std::runtime_error when it fails, or doesn't give the same both times.
Reference MakeReference(Sandbox& sandbox, const Variant& variant, Command command);

/// Manifests, "Info.plist" and the like: the files that bear their names.
bool IsNamedFile(const std::string& strObject);
