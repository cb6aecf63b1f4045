#include "common/path.h"

#include <unistd.h>

#include <cstring>

#include "common/status.h"
#include "common/text.h"

using namespace orvandel;

namespace {

/// Returns the first path that doesn't exist. Numbers start at nNumber; 0 is the path itself.
/// @param nNumber receives the number used.
std::string FirstFreeName(const std::string& strPath, unsigned int& nNumber) {
  if (nNumber == 0) {
    if (access(strPath.c_str(), F_OK) != 0) return strPath;
    nNumber = 1;
  }
  std::string strDrive, strFolder, strName, strExtension;
  _splitpath(strPath.c_str(), strDrive, strFolder, strName, strExtension);
  for (;; ++nNumber) {
    const std::string strCandidate =
        strDrive + strFolder + strName + "(" + std::to_string(nNumber) + ")" + strExtension;
    if (access(strCandidate.c_str(), F_OK) != 0) return strCandidate;
  }
}

}  // namespace

void _splitpath(const char* pszPath, std::string& strDrive, std::string& strFolder, std::string& strName,
                std::string& strExtension) {
  const std::string strPath = pszPath ? pszPath : "";
  strDrive.clear();
  const size_t nSlash = strPath.rfind('/');
  const size_t nName = nSlash == std::string::npos ? 0 : nSlash + 1;
  strFolder = strPath.substr(0, nName);
  strName = strPath.substr(nName);
  strExtension.clear();
  const size_t nDot = strName.rfind('.');
  if (nDot == std::string::npos) return;
  strExtension = strName.substr(nDot);
  strName.erase(nDot);
}

int GetExtendName(const char* pszName, std::string& strExtension) {
  const char* pszDot = pszName ? strrchr(pszName, '.') : nullptr;
  if (!pszDot) return kStatusMissing;
  strExtension = pszDot + 1;
  return 0;
}

namespace orvandel {

std::string FreeNames::Take(const std::string& strPath) {
  return FirstFreeName(strPath, m_lastNumbers[strPath]);
}

bool HasParentStep(const std::string& strPath) {
  return ("/" + strPath + "/").find("/../") != std::string::npos;
}

}  // namespace orvandel

std::u16string GetRealFileName(const char* pszPath) {
  unsigned int nNumber = 0;
  return Ansi2Unicode(FirstFreeName(pszPath ? pszPath : "", nNumber).c_str());
}
