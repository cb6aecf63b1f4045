#include "tests/faults/table.h"

#include <cstdio>
#include <set>

namespace orvandel {

namespace {

constexpr int kMostShown = 3;  // cases of one kind of defect that are printed

/// The first words of a defect, without the names in it.
std::string KindOfDefect(const Case& one, const std::string& strDefect) {
  return one.fault.strKind + one.fault.strObject + kCommandNames[static_cast<int>(one.command)] +
         strDefect.substr(0, strDefect.find(':'));
}

}  // namespace

void Table::Add(const Case& one, const Verdict& verdict) {
  for (Row* pRow : {&m_kinds[one.fault.strKind], &m_commands[kCommandNames[static_cast<int>(one.command)]]}) {
    ++pRow->nTried;
    ++pRow->outcomes[verdict.outcome];
  }
  for (const std::string& strException : std::set(verdict.exceptions.begin(), verdict.exceptions.end()))
    ++m_exceptions[strException];
  if (verdict.outcome != Verdict::kLost) return;
  ++m_nDefects;
  bool bShow = false;
  for (const std::string& strDefect : verdict.defects)
    bShow |= m_shown[KindOfDefect(one, strDefect)]++ < kMostShown;
  if (!bShow) return;
  std::printf("DEFECT: %s; %s; %s %s; plan \"%s\"\n", one.pVariant->pszName,
              kCommandNames[static_cast<int>(one.command)], one.fault.strDetail.c_str(),
              one.fault.strObject.c_str(), one.fault.strPlan.c_str());
  int nLeft = kMostShown;
  for (const std::string& strDefect : verdict.defects) {
    if (nLeft-- > 0) std::printf("    %s\n", strDefect.c_str());
  }
  if (nLeft < 0) std::printf("    ... and %d more\n", -nLeft);
  std::fflush(stdout);
}

void Table::PrintRows(const char* pszHead, const std::map<std::string, Row>& rows) {
  std::printf("\n| %s | tried | as undisturbed | reported | by design | lost |\n|---|---|---|---|---|---|\n",
              pszHead);
  Row all;
  const auto print = [](const std::string& strName, const Row& row) {
    std::printf("| %s | %d | %d | %d | %d | %d |\n", strName.c_str(), row.nTried, row.outcomes[0],
                row.outcomes[1], row.outcomes[2], row.outcomes[3]);
  };
  for (const auto& [strName, row] : rows) {
    print(strName, row);
    all.nTried += row.nTried;
    for (size_t i = 0; i < row.outcomes.size(); ++i) all.outcomes[i] += row.outcomes[i];
  }
  print("all", all);
}

void Table::Print() const {
  PrintRows("Fault", m_kinds);
  PrintRows("Command", m_commands);
  std::printf("\n| Exception | runs |\n|---|---|\n");
  for (const auto& [strException, nRuns] : m_exceptions)
    std::printf("| %s | %d |\n", strException.c_str(), nRuns);
  std::printf("\n");
}

}  // namespace orvandel
