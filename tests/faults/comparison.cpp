#include "tests/faults/comparison.h"

#include <algorithm>
#include <set>
#include <sstream>

#include "tests/faults/tree.h"

namespace orvandel {

namespace {

constexpr size_t kPageEnd = 16;  // bytes compared at the end of a page

bool EndsWith(const std::string& strText, const std::string& strEnd) {
  return strText.size() >= strEnd.size() &&
         strText.compare(strText.size() - strEnd.size(), strEnd.size(), strEnd) == 0;
}

bool Contains(const std::string& strText, const std::string& strPart) {
  return strText.find(strPart) != std::string::npos;
}

std::string FolderOf(const std::string& strPath) {
  return strPath.substr(0, strPath.rfind('/') + 1);
}

/// The folder of a category: "/Camera Roll".
std::string TopOf(const std::string& strPath) {
  return strPath.substr(0, strPath.find('/', 1));
}

/// A name without "(1)" in front of its extension.
std::string WithoutNumber(std::string strPath) {
  const size_t nOpen = strPath.rfind('('), nClose = strPath.rfind(").");
  if (nOpen != std::string::npos && nClose == nOpen + 2) strPath.erase(nOpen, 3);
  return strPath;
}

std::vector<std::string> LinesOf(const std::string& strText) {
  std::istringstream stream(strText);
  std::vector<std::string> lines;
  for (std::string strLine; std::getline(stream, strLine);) lines.push_back(strLine);
  return lines;
}

}  // namespace

std::vector<std::string> ReportsOf(const Reference& reference, const Run& run) {
  std::vector<std::string> reports;
  for (const std::string& strLine : LinesOf(run.process.strErr)) {
    if (!reference.errorLines.count(strLine)) reports.push_back(strLine);
  }
  for (const std::string& strLine : LinesOf(run.process.strOut)) {
    if (strLine.rfind("Failed\t", 0) == 0) reports.push_back(strLine);
  }
  return reports;
}

std::vector<std::string> Missing(const Products& expected, const Products& actual) {
  std::multiset<std::pair<std::string, std::string>> spare;  // folder and bytes of products with another name
  std::vector<std::string> missing;
  for (const auto& [strPath, strBytes] : actual) {
    const auto it = expected.find(strPath);
    if (it == expected.end() || it->second != strBytes) spare.emplace(FolderOf(strPath), strBytes);
  }
  for (const auto& [strPath, strBytes] : expected) {
    const auto it = actual.find(strPath);
    if (it != actual.end() && it->second == strBytes) continue;
    const auto other = spare.find({FolderOf(strPath), strBytes});
    if (other == spare.end())
      missing.push_back(strPath);
    else
      spare.erase(other);
  }
  return missing;
}

bool IsReported(const Reference& reference, const Run& run, const std::vector<std::string>& reports,
                const std::string& strProduct) {
  // No totals and no name: the backup couldn't be read at all, or there was no space to start.
  const bool bGaveUp = run.process.nExitStatus != 0 &&
                       run.process.strOut.find(" recovered, ") == std::string::npos && run.products.empty();
  if (bGaveUp && !reports.empty()) return true;
  std::set<std::string> names = {strProduct};
  const auto add = [&](const std::string& strObject) {
    const auto it = reference.names.find(strObject);
    if (it != reference.names.end()) names.insert(it->second.begin(), it->second.end());
  };
  for (const char* pszName : {"/Info.plist", "/Manifest.plist", "/Manifest.db", "/Manifest.mbdb"})
    add(pszName);
  const auto sources = reference.sources.find(strProduct);
  if (sources != reference.sources.end()) std::for_each(sources->second.begin(), sources->second.end(), add);
  // A file with a duplicate name is reported without the number that it would have got.
  const std::string strPlain = WithoutNumber(strProduct);
  const auto isOfName = [&](const std::string& strReport) { return Contains(strReport, strPlain); };
  if (strPlain != strProduct && std::count_if(reports.begin(), reports.end(), isOfName) > 1) return true;
  names.insert("the decrypt tool ended early: files may be missing");
  names.insert("neither a \"Manifest.db\" nor a \"Manifest.mbdb\"");
  return std::any_of(reports.begin(), reports.end(), [&](const std::string& strReport) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& strName) { return Contains(strReport, strName); });
  });
}

bool IsWhole(const Reference& reference, const Run& run, const std::string& strPath,
             const std::string& strMaster, const std::string& strBackup, bool bEncrypted) {
  const std::string& strBytes = run.products.at(strPath);
  for (const auto& [strProduct, strExpected] : reference.run.products) {
    if (strExpected == strBytes) return true;
  }
  if (EndsWith(strPath, ".txt")) return EndsWith(strBytes, "\n\n");
  if (EndsWith(strPath, ".html")) {
    return std::any_of(reference.run.products.begin(), reference.run.products.end(),
                       [&](const auto& product) {
                         return EndsWith(product.first, ".html") && TopOf(product.first) == TopOf(strPath) &&
                                EndsWith(strBytes, product.second.substr(product.second.size() - kPageEnd));
                       });
  }
  if (strPath.rfind("/Manifest.db", 0) == 0) return true;  // written by the tool; checked by size
  if (bEncrypted) return false;
  for (const std::string& strFolder : {strBackup, strMaster}) {
    for (const auto& [strFile, strContent] : FilesIn(strFolder)) {
      if (strContent == strBytes) return true;
    }
  }
  return false;
}

}  // namespace orvandel
