#pragma once
#include <plist/plist.h>

#include <memory>
#include <string>
#include <vector>

#include "sample/demo_backup.h"
#include "sample/stores.h"
#include "tests/support.h"

// Samples and what they contain, read without the engine.

namespace orvandel {

struct PlistDeleter {
  void operator()(void* pList) const { plist_free(pList); }
};
using PlistPtr = std::unique_ptr<void, PlistDeleter>;

/// Parses a binary property list; fails the test for anything else.
PlistPtr ParseBinaryList(const std::string& strBytes);
/// Parses a property list in XML; fails the test for anything else.
PlistPtr ParseXmlList(const std::string& strBytes);
/// The member of a dictionary as text: strings as they are, numbers in decimal, booleans as "true" and
/// "false", data as its bytes, dates in seconds since 2001; "(missing)" without one, "(other)" for other
/// kinds.
std::string Value(plist_t pDictionary, const char* pszKey);

/// All rows of a statement over a store, which is opened as immutable; columns as text, NULL as "(null)",
/// blobs as their bytes. Fails the test on an error.
using Rows = std::vector<std::vector<std::string>>;
Rows RowsOf(const std::string& strStore, const std::string& strStatement);

/// A sample in a temporary folder.
class WrittenSample {
 public:
  /// @param nIos 0 for a sample without a version.
  explicit WrittenSample(int nIos);
  explicit WrittenSample(const DemoOptions& options);

  std::string Path(const std::string& strName = {}) const;
  /// Path of the file with a place on the device.
  std::string FileOf(const std::string& strDomain, const std::string& strPath) const;
  std::string StoreOf(const StorePlace& place) const;
  /// Rows of the store of messages.
  Rows Messages(const std::string& strStatement) const;
  const DemoOptions& Options() const { return m_options; }
  const DemoSummary& Summary() const { return m_summary; }

 private:
  TemporaryFolder m_folder;
  DemoOptions m_options;
  DemoSummary m_summary;
};

/// Options for a version. Few items, so that a test is fast.
DemoOptions OptionsOf(int nIos);

}  // namespace orvandel
