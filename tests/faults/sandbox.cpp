#include "tests/faults/sandbox.h"

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "tests/faults/tree.h"

namespace orvandel {

namespace fs = std::filesystem;

namespace {

constexpr char kPassword[] = "pw";
constexpr char kWorkFolder[] = "/var/tmp/orvandel-work-";
constexpr size_t kRandomPart = 6;  // random characters in the name
constexpr size_t kStampLength = 14;

std::vector<std::string> WithSize(std::vector<std::string> arguments) {
  for (const char* pszArgument : {"--photos", "4", "--messages", "20", "--contacts", "5"})
    arguments.emplace_back(pszArgument);
  return arguments;
}

std::vector<std::string> Encrypted(const char* pszAge) {
  return WithSize({"--encrypted", kPassword, "--rounds", "10", "--age", pszAge});
}

bool IsStamp(const std::string& strText, size_t nAt) {
  if (nAt == 0 || nAt + kStampLength >= strText.size() || strText.compare(nAt, 2, "20") != 0) return false;
  for (size_t i = 0; i < kStampLength; ++i) {
    if (!isdigit(static_cast<unsigned char>(strText[nAt + i]))) return false;
  }
  return strchr("-_/", strText[nAt - 1]) && strchr("./", strText[nAt + kStampLength]);
}

/// Mounts a tmpfs for the folders that are written to, if permitted: thousands of runs with a hundred files
/// each are slow on a disk.
void KeepInMemory(const std::string& strRoot) {
  if (unshare(CLONE_NEWNS) != 0 || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return;
  for (const std::string& strFolder : {std::string("/var/tmp"), strRoot})
    mount("tmpfs", strFolder.c_str(), "tmpfs", 0, "mode=1777");
}

const char* ProgramOf(Command command) {
  return command == Command::Tool     ? "Velmora Orvandel"
         : command == Command::Window ? "orvandel-faults-window"
                                      : "orvandel-cli";
}

}  // namespace

const std::vector<Variant> kVariants = {
    {"plain, Manifest.db", WithSize({}), false, true},
    {"plain, Manifest.mbdb", WithSize({"--layout", "mbdb"}), false, false},
    {"encrypted, iOS 9", Encrypted("9"), true, false},
    {"encrypted, iOS 10.0", Encrypted("10.0"), true, true},
    {"encrypted, iOS 10.2", Encrypted("10.2"), true, true},
};

const char* const kCommandNames[kCommands] = {"backups", "scan",         "scan --json",
                                              "recover", "decrypt tool", "window"};

std::string Normal(const std::string& strText) {
  std::string strNormal;
  strNormal.reserve(strText.size());
  for (size_t i = 0; i < strText.size();) {
    if (strText[i] == '2' && IsStamp(strText, i)) {
      strNormal += "STAMP";
      i += kStampLength;
    } else if (strText[i] == '/' && strText.compare(i, strlen(kWorkFolder), kWorkFolder) == 0) {
      strNormal += "WORK";
      i += strlen(kWorkFolder) + kRandomPart;
    } else {
      strNormal += strText[i++];
    }
  }
  return strNormal;
}

Sandbox::Sandbox(const std::string& strRoot, const std::string& strPrograms)
    : m_strRoot(strRoot), m_strPrograms(strPrograms) {
  MakeEmptyFolder(m_strRoot);
  KeepInMemory(m_strRoot);
  WriteBytes(m_strRoot + "/password", kPassword);
  for (const char* pszFolder : {"/home", "/tmp", "/cwd", "/backups"})
    fs::create_directories(m_strRoot + pszFolder);
  for (const Variant& variant : kVariants) {
    ProcessStart start;
    start.arguments = {m_strPrograms + "/orvandel-sample"};
    start.arguments.insert(start.arguments.end(), variant.sampleArguments.begin(),
                           variant.sampleArguments.end());
    start.arguments.push_back(Master(variant));
    start.strFolder = m_strRoot + "/cwd";
    fs::create_directories(m_strRoot + "/master");
    const ProcessResult result = RunProcess(start);
    if (result.nExitStatus != 0 || result.nSignal != 0)
      throw std::runtime_error("orvandel-sample failed: " + result.strErr);
  }
  // An intact backup beside the disturbed one.
  const std::string strInfo = BytesOf(Master(kVariants[0]) + "/Info.plist");
  WriteBytes(m_strRoot + "/backups/two/Info.plist", strInfo);
}

std::vector<std::string> Sandbox::Arguments(const Variant& variant, Command command) const {
  const std::string strOut = m_strRoot + "/out";
  std::vector<std::string> arguments = {m_strPrograms + "/" + ProgramOf(command)};
  const auto add = [&](std::initializer_list<std::string> more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
  };
  if (command == Command::Backups) add({"backups", m_strRoot + "/backups"});
  if (command == Command::Scan) add({"scan", Backup()});
  if (command == Command::ScanJson) add({"scan", "--json", "--manifest", Backup()});
  if (command == Command::Recover) add({"recover", "--no-index", Backup(), strOut});
  if (command == Command::Tool) add({Backup(), strOut, kPassword});
  if (command == Command::Window)
    add({m_strRoot + "/backups", Backup(), m_strRoot + "/work", strOut, variant.bEncrypted ? kPassword : ""});
  const bool bAsks = command == Command::Scan || command == Command::ScanJson || command == Command::Recover;
  if (bAsks && variant.bEncrypted) add({"--password-file", m_strRoot + "/password"});
  return arguments;
}

std::map<std::string, std::string> Sandbox::Environment(Command command, const Fault& fault) const {
  std::string strWritable = m_strRoot + "/out:" + m_strRoot + "/work:" + kWorkFolder;
  // Caches and settings of Qt.
  if (command == Command::Window) strWritable += ":" + m_strRoot + "/home:" + m_strRoot + "/tmp";
  return {{"PATH", "/usr/bin:/bin"},
          {"LC_ALL", "C.UTF-8"},
          {"HOME", m_strRoot + "/home"},
          {"TMPDIR", m_strRoot + "/tmp"},
          {"XDG_RUNTIME_DIR", m_strRoot + "/tmp"},
          {"QT_QPA_PLATFORM", "offscreen"},
          {"LD_PRELOAD", m_strPrograms + "/libfaults_shim.so"},
          {"FAULT_PROGRAM", fault.bOfTool ? ProgramOf(Command::Tool) : ProgramOf(command)},
          {"FAULT_BACKUP", Backup()},
          {"FAULT_WRITABLE", strWritable},
          {"FAULT_COUNTERS", m_strRoot + "/counters"},
          {"FAULT_OUTSIDE", m_strRoot + "/outside"},
          {"FAULT_PLAN", fault.strPlan},
          {"FAULT_VICTIM", fault.strObject.empty() ? "" : Backup() + fault.strObject}};
}

void Sandbox::Reset(const Variant& variant, bool bKeepDestination) const {
  CopyTree(Master(variant), Backup());
  WriteBytes(m_strRoot + "/counters", std::string(sizeof(Counters), '\0'));
  WriteBytes(m_strRoot + "/outside", "");
  MakeEmptyFolder(m_strRoot + "/work");
  if (!bKeepDestination) MakeEmptyFolder(m_strRoot + "/out");
}

Run Sandbox::Execute(const Variant& variant, Command command, const Fault& fault, bool bKeepDestination) {
  Reset(variant, bKeepDestination);
  if (fault.place) fault.place(Backup() + fault.strObject);
  const auto before = TreeState(Backup());
  ProcessStart start;
  start.arguments = Arguments(variant, command);
  start.environment = Environment(command, fault);
  start.strFolder = m_strRoot + "/cwd";
  Run run;
  run.process = RunProcess(start);
  run.process.strOut = Normal(run.process.strOut);
  run.process.strErr = Normal(run.process.strErr);

  auto after = TreeState(Backup());
  for (const auto& [strPath, strState] : before) {
    if (after[strPath] != strState) run.changed.push_back(strPath);
  }
  for (const auto& [strPath, strState] : after) {
    if (!before.count(strPath)) run.changed.push_back(strPath);
  }
  for (auto& [strPath, strBytes] : FilesIn(m_strRoot + "/out"))
    run.products[Normal(strPath)] = std::move(strBytes);
  const std::string strCounters = BytesOf(m_strRoot + "/counters");
  memcpy(&run.counters, strCounters.data(), sizeof run.counters);
  std::istringstream notes(BytesOf(m_strRoot + "/outside"));
  for (std::string strLine; std::getline(notes, strLine);) {
    const size_t nBlank = strLine.find(' ');
    const std::string strPath = strLine.substr(nBlank + 1);
    if (strLine[0] == 'o') {
      run.outside.push_back(strPath);
    } else if (fs::exists(strPath)) {
      run.workFolders.push_back(strPath);
      fs::remove_all(strPath);
    }
  }
  return run;
}

}  // namespace orvandel
