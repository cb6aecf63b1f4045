#include "tests/faults/oracle.h"

#include <algorithm>
#include <sstream>

#include "tests/faults/comparison.h"
#include "tests/faults/exceptions.h"

namespace orvandel {

namespace {

constexpr char kSecret[] = "SECRET-OUTSIDE-THE-BACKUP";  // see cases_objects.cpp
constexpr char kDecryptedManifest[] = "/Manifest.db-decypted";

class Judgement {
 public:
  Judgement(const Reference& reference, Command command, const Variant& variant, const Fault& fault,
            const Run& run, const std::string& strMaster, const std::string& strBackup)
      : m_reference(reference),
        m_command(command),
        m_variant(variant),
        m_fault(fault),
        m_run(run),
        m_strMaster(strMaster),
        m_strBackup(strBackup),
        m_reports(ReportsOf(reference, run)) {}

  Verdict Take() {
    CheckEnd();
    CheckBackup();
    CheckOutside();
    if (m_command == Command::Recover || m_command == Command::Tool || m_command == Command::Window)
      CheckWhole();
    const bool bEnded =
        m_fault.effect == Fault::kSignal && (m_run.process.nSignal != 0 || m_run.process.nExitStatus > 128);
    if (!bEnded && (m_command == Command::Recover || m_command == Command::Tool)) CheckProducts();
    if (!bEnded && m_command <= Command::ScanJson) CheckOutput();
    return m_verdict;
  }

 private:
  void Defect(const std::string& strText) {
    m_verdict.outcome = Verdict::kLost;
    m_verdict.defects.push_back(strText);
  }
  void Raise(Verdict::Outcome outcome) { m_verdict.outcome = std::max(m_verdict.outcome, outcome); }

  /// A signal ended the process immediately: one that can't be caught, or isn't.
  bool ByKill() const { return m_fault.effect == Fault::kSignal && m_run.process.nSignal != 0; }

  void CheckEnd() {
    const ProcessResult& process = m_run.process;
    if (process.bHung) return Defect("hangs");
    const bool bInjected = m_fault.effect == Fault::kSignal;
    if (process.nSignal != 0 && !(bInjected && !m_fault.bOfTool))
      Defect("ended by signal " + std::to_string(process.nSignal));
    if (!(bInjected && m_fault.bOfTool) && process.strErr.find("ended early") != std::string::npos)
      Defect("the decrypt tool crashed");
    if (m_command == Command::Window && !bInjected && process.nExitStatus != 0)
      Defect("the window's driver ended with " + std::to_string(process.nExitStatus) + ": " + process.strErr);
    const bool bFailed =
        process.strOut.rfind("Failed\t", 0) == 0 || process.strOut.find("\nFailed\t") != std::string::npos;
    if (process.nSignal == 0 && process.nExitStatus == 0 && bFailed)
      Defect("exit status 0 with files reported as failed");
  }

  void CheckBackup() {
    const bool bMayWrite = m_command == Command::Tool || m_command == Command::Window;
    for (const std::string& strPath : m_run.changed) {
      const bool bManifest = strPath.rfind(kDecryptedManifest, 0) == 0;
      if (bMayWrite && (bManifest || strPath.empty())) {
        if (bManifest && strPath != kDecryptedManifest && !ByKill())
          Defect("left behind in the backup: " + strPath);
        continue;
      }
      // Removed by the shim itself.
      const bool bInRun =
          m_fault.strPlan.rfind("remove", 0) == 0 || m_fault.strPlan.rfind("truncate", 0) == 0;
      if (bInRun && m_fault.strObject.rfind(strPath, 0) == 0) continue;
      Defect("changes the backup: " + (strPath.empty() ? "its folder" : strPath));
    }
  }

  void CheckOutside() {
    for (const std::string& strPath : m_run.outside) Defect("writes outside: " + strPath);
    if (!ByKill()) {
      for (const std::string& strPath : m_run.workFolders) Defect("leaves its work folder: " + strPath);
    }
    bool bSecret = m_run.process.strOut.find(kSecret) != std::string::npos;
    for (const auto& [strPath, strBytes] : m_run.products)
      bSecret |= strBytes.find(kSecret) != std::string::npos;
    if (bSecret) Defect("copies what lies outside the backup");
  }

  void CheckWhole() {
    for (const auto& [strPath, strBytes] : m_run.products) {
      if (IsWhole(m_reference, m_run, strPath, m_strMaster, m_strBackup, m_variant.bEncrypted)) continue;
      const bool bPart = m_command != Command::Recover && strPath.find(".part") != std::string::npos;
      if (bPart && ByKill()) continue;  // the name marks it as incomplete
      Defect((ByKill() ? "partial file after a signal: " : "partial file: ") + strPath);
    }
  }

  void CheckProducts() {
    for (const std::string& strProduct : Missing(m_reference.run.products, m_run.products)) {
      if (IsReported(m_reference, m_run, m_reports, strProduct)) {
        Raise(Verdict::kReported);
        continue;
      }
      const std::string strException =
          ExceptionFor(m_reference, m_variant, m_fault, m_run, strProduct, m_strBackup);
      if (strException.empty()) {
        Defect("lost without a word: " + strProduct);
      } else {
        Raise(Verdict::kByDesign);
        m_verdict.exceptions.push_back(strException);
      }
    }
  }

  void CheckOutput() {
    if (m_run.process.strOut == m_reference.run.process.strOut && m_run.process.nExitStatus == 0) return;
    if (!m_reports.empty()) return Raise(Verdict::kReported);
    const std::string strException =
        OutputException(m_reference, m_command, m_variant, m_fault, m_run, m_strBackup);
    if (strException.empty()) return Defect("prints something else without a word on standard error");
    Raise(Verdict::kByDesign);
    m_verdict.exceptions.push_back(strException);
  }

  const Reference& m_reference;
  Command m_command;
  const Variant& m_variant;
  const Fault& m_fault;
  const Run& m_run;
  const std::string &m_strMaster, &m_strBackup;
  std::vector<std::string> m_reports;
  Verdict m_verdict;
};

}  // namespace

Verdict Judge(const Reference& reference, Command command, const Variant& variant, const Fault& fault,
              const Run& run, const std::string& strMaster, const std::string& strBackup) {
  return Judgement(reference, command, variant, fault, run, strMaster, strBackup).Take();
}

Verdict JudgeRepetition(const Reference& reference, Command command, const Run& run) {
  Verdict verdict;
  const auto defect = [&](const std::string& strText) {
    verdict.outcome = Verdict::kLost;
    verdict.defects.push_back("repeated: " + strText);
  };
  if (run.process.bHung) defect("hangs");
  if (run.process.nSignal != 0 || run.process.nExitStatus != reference.run.process.nExitStatus)
    defect("ends with " + std::to_string(run.process.nExitStatus) + ", signal " +
           std::to_string(run.process.nSignal));
  for (const std::string& strProduct : Missing(reference.run.products, run.products))
    defect(strProduct + " is missing");
  if (command <= Command::ScanJson && run.process.strOut != reference.run.process.strOut)
    defect("prints something else");
  return verdict;
}

}  // namespace orvandel
