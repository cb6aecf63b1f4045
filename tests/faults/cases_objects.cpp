#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "tests/faults/cases.h"
#include "tests/faults/tree.h"

namespace orvandel {

namespace fs = std::filesystem;

namespace {

/// Creates a file outside the backup as a link target: a copy of the object with a mark at its end.
std::string MakeSecret(const std::string& strPath) {
  const std::string strSecret =
      fs::path(strPath).parent_path().parent_path().parent_path().string() + "/secret";
  fs::remove_all(strSecret);
  if (fs::is_directory(strPath)) {
    CopyTree(strPath, strSecret);
    for (const fs::directory_entry& entry : fs::directory_iterator(strSecret))
      WriteBytes(entry.path().string(), BytesOf(entry.path().string()) + "SECRET-OUTSIDE-THE-BACKUP");
  } else {
    WriteBytes(strSecret, BytesOf(strPath) + "SECRET-OUTSIDE-THE-BACKUP");
  }
  return strSecret;
}

void Check(int nResult, const std::string& strPath) {
  if (nResult != 0) throw std::runtime_error(strPath + ": can't be put there: " + strerror(errno));
}

/// Created from within its folder, because the length of a socket's path is limited.
void MakeSocket(const std::string& strPath) {
  const fs::path old = fs::current_path();
  fs::current_path(fs::path(strPath).parent_path());
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  strncpy(address.sun_path, fs::path(strPath).filename().c_str(), sizeof address.sun_path - 1);
  const int nSocket = socket(AF_UNIX, SOCK_STREAM, 0);
  Check(bind(nSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address), strPath);
  close(nSocket);
  fs::current_path(old);
}

/// A device node if the campaign may create one, else a link to the device.
void MakeDevice(const std::string& strPath, unsigned int nMinor, const char* pszDevice) {
  if (mknod(strPath.c_str(), S_IFCHR | 0666, makedev(1, nMinor)) != 0) fs::create_symlink(pszDevice, strPath);
}

struct Replacement {
  const char* pszKind;
  void (*pfnPlace)(const std::string& strPath);  // the object has been moved away
};

const Replacement kReplacements[] = {
    {"FIFO", [](const std::string& strPath) { Check(mkfifo(strPath.c_str(), 0644), strPath); }},
    {"link to itself",
     [](const std::string& strPath) { fs::create_symlink(fs::path(strPath).filename(), strPath); }},
    {"dangling link", [](const std::string& strPath) { fs::create_symlink("/nowhere/at-all", strPath); }},
    {"folder", [](const std::string& strPath) { fs::create_directory(strPath); }},
    {"/dev/zero", [](const std::string& strPath) { MakeDevice(strPath, 5, "/dev/zero"); }},
    {"/dev/null", [](const std::string& strPath) { MakeDevice(strPath, 3, "/dev/null"); }},
    {"socket", MakeSocket},
};

}  // namespace

void AddObjectCases(const Reference& reference, const Variant& variant, Command command,
                    std::vector<Case>& cases) {
  for (const auto& [strWhat, strObject] : reference.objects) {
    const auto add = [&](Fault fault) {
      fault.strObject = strObject;
      fault.strDetail += " in place of " + strWhat;
      cases.push_back({&variant, command, std::move(fault)});
    };
    const bool bFolder = strWhat == "two-character folder";
    for (const Replacement& replacement : kReplacements) {
      if (bFolder && strcmp(replacement.pszKind, "folder") == 0) continue;  // an empty one only lacks files
      Fault fault;
      fault.strKind = replacement.pszKind;
      fault.strDetail = replacement.pszKind;
      fault.place = [pfnPlace = replacement.pfnPlace](const std::string& strPath) {
        fs::remove_all(strPath);
        pfnPlace(strPath);
      };
      add(std::move(fault));
    }
    Fault link;
    link.strKind = "link to a file outside";
    link.strDetail = link.strKind;
    link.place = [](const std::string& strPath) {
      const std::string strSecret = MakeSecret(strPath);
      fs::remove_all(strPath);
      fs::create_symlink(strSecret, strPath);
    };
    add(std::move(link));
    for (const int nError : {EACCES, EIO}) {
      Fault fault;
      fault.strKind = nError == EACCES ? "EACCES on open" : "EIO on open";
      fault.strDetail = fault.strKind;
      fault.effect = Fault::kUnreadable;
      fault.strPlan = "open 0 " + std::to_string(nError);
      add(std::move(fault));
    }
    if (bFolder) continue;
    for (const int nBytes : {0, 5, 100, 600, 4096, 10000}) {
      Fault fault;
      fault.strKind = "EIO on read";
      fault.strDetail = "EIO after " + std::to_string(nBytes) + " bytes";
      fault.effect = Fault::kUnreadable;
      fault.strPlan = "read " + std::to_string(nBytes) + " " + std::to_string(EIO);
      add(std::move(fault));
    }
    Fault empty;
    empty.strKind = "empty file";
    empty.strDetail = empty.strKind;
    empty.effect = Fault::kCut;
    empty.place = [](const std::string& strPath) { fs::resize_file(strPath, 0); };
    add(std::move(empty));
  }
}

}  // namespace orvandel
