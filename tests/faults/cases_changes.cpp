// Files that are removed or truncated, before or during a run.

#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/faults/cases.h"

namespace orvandel {

namespace fs = std::filesystem;

namespace {

constexpr int kVanishings = 12;  // of each object, at calls chosen at random
constexpr size_t kPage = 4096;   // bytes
constexpr int kRandomCuts = 12;  // of each file

bool IsFolder(const std::string& strWhat) {
  return strWhat == "two-character folder";
}

}  // namespace

void AddVanishingCases(const Reference& reference, const Variant& variant, Command command, Random& random,
                       std::vector<Case>& cases) {
  const unsigned long nOpens = std::max(reference.run.counters.nOpens, 1ul);
  for (const auto& [strWhat, strObject] : reference.objects) {
    if (IsFolder(strWhat)) continue;
    for (int i = 0; i < kVanishings; ++i) {
      const std::string strAt = std::to_string(1 + random() % nOpens);
      Fault removed;
      removed.strKind = "removed during the run";
      removed.effect = Fault::kGone;
      removed.strObject = strObject;
      removed.strDetail = strWhat + " removed at open " + strAt;
      removed.strPlan = "remove " + strAt + " 0";
      cases.push_back({&variant, command, removed});
      Fault cut;
      cut.strKind = "cut short during the run";
      cut.effect = Fault::kCut;
      cut.strObject = strObject;
      const std::string strSize = std::to_string(random() % (i % 2 ? 6000 : 600));
      cut.strDetail = strWhat + " cut to " + strSize + " bytes at open " + strAt;
      cut.strPlan = "truncate " + strAt + " " + strSize;
      cases.push_back({&variant, command, cut});
    }
  }
}

void AddCutCases(const Reference& reference, const Variant& variant, Command command,
                 const std::string& strMaster, Random& random, std::vector<Case>& cases) {
  for (const auto& [strWhat, strObject] : reference.objects) {
    if (IsFolder(strWhat)) continue;
    const size_t nSize = fs::file_size(strMaster + strObject);
    std::set<size_t> sizes = {0, 1, 5, 6, 7, 511, 512};
    for (size_t nCut = kPage; nCut < nSize; nCut += kPage) sizes.insert(nCut);
    for (int i = 0; i < kRandomCuts; ++i) sizes.insert(random() % nSize);
    for (const size_t nCut : sizes) {
      if (nCut >= nSize) continue;
      Fault fault;
      fault.strKind = "cut short before the run";
      fault.effect = Fault::kCut;
      fault.strObject = strObject;
      fault.strDetail =
          strWhat + " cut to " + std::to_string(nCut) + " of " + std::to_string(nSize) + " bytes";
      fault.place = [nCut](const std::string& strPath) { fs::resize_file(strPath, nCut); };
      cases.push_back({&variant, command, std::move(fault)});
    }
  }
}

}  // namespace orvandel
