#pragma once
#include <array>
#include <map>
#include <string>

#include "tests/faults/cases.h"
#include "tests/faults/oracle.h"

namespace orvandel {

/// Counts the verdicts, and prints them as the tables of docs/reliability.md.
class Table {
 public:
  /// Adds a run, and prints it immediately if it has a defect.
  void Add(const Case& one, const Verdict& verdict);
  void Print() const;
  bool HasDefects() const { return m_nDefects != 0; }

 private:
  struct Row {
    int nTried = 0;
    std::array<int, 4> outcomes{};  // by Verdict::Outcome
  };
  static void PrintRows(const char* pszHead, const std::map<std::string, Row>& rows);

  std::map<std::string, Row> m_kinds, m_commands;
  std::map<std::string, int> m_exceptions;
  std::map<std::string, int> m_shown;  // defects of a kind that were printed
  int m_nDefects = 0;
};

}  // namespace orvandel
