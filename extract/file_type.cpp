#include "extract/file_type.h"

#include <strings.h>

#include <cerrno>
#include <cstring>

#include "common/file.h"
#include "common/file_source.h"
#include "common/format.h"
#include "common/problem.h"
#include "common/status.h"

using namespace orvandel;

// The tests in the order in which they are tried. The first row of a type gives its extension; further rows
// of a type are used only by GetExtendNameType.
const CFileTypeJudge::Row CFileTypeJudge::szExtendNameAndType[] = {
    {"mpeg", 15, IsMpgType},      {"mpg", 15, IsMpgType}, {"vob", 15, IsMpgType}, {"mp4", 18, IsMp4Type},
    {"rmvb", 23, IsRmvbType},     {"wmv", 24, IsAsfType}, {"wma", 24, IsAsfType}, {"avi", 22, IsAviType},
    {"3gp", 16, Is3pgType},       {"mp3", 12, IsMp3Type}, {"mid", 13, IsMidType}, {"wav", 21, IsWavType},
    {"mov", 17, IsMovType},       {"gif", 31, IsGifType}, {"bmp", 29, IsBmpType}, {"jpg", 10, IsJpgType},
    {"jpeg", 10, IsJpgType},      {"jpe", 10, IsJpgType}, {"png", 30, IsPngType}, {"ico", 46, IsIcoType},
    {nullptr, kUnknown, nullptr},
};

const CFileTypeJudge::Row* CFileTypeJudge::FindRow(const void* pData, uint32_t nLength) {
  const Row* pHit = szExtendNameAndType;
  while (pHit->pfnTest && pHit->pfnTest(pData, nLength) == kUnknown) ++pHit;
  if (!pHit->pfnTest) return nullptr;
  const Row* pFirst = szExtendNameAndType;
  while (pFirst->nType != pHit->nType) ++pFirst;
  return pFirst;
}

int CFileTypeJudge::ParseFileBuf(const char* pszPath, std::string& strOutput) {
  BackupFileHead head;
  ReadFileHead(pszPath, head);
  return JudgeHead(pszPath, head, strOutput);
}

namespace {

/// Reports a file whose unknown type may come from a wrong key, if its folder has a source that can tell.
void ReportIfUnsound(const char* pszPath) {
  std::string strName;
  const auto pSource = FileSourceOf(pszPath, strName);
  const Problem problem = pSource ? pSource->Check(strName) : Problem();
  if (problem) ReportLoss(pszPath, problem.strReason);
}

}  // namespace

int CFileTypeJudge::JudgeHead(const char* pszPath, const BackupFileHead& head, std::string& strOutput) {
  if (const int nError = head.nOpenError) {
    if (nError != ENOENT && !head.strOpenProblem.empty()) ReportLoss(pszPath, head.strOpenProblem);
    if (nError != ENOENT && head.strOpenProblem.empty())
      ReportLoss(SystemProblem(Problem::Step::Open, pszPath, nError));
    // It exists but isn't a regular file: no type, but not missing.
    return nError == EISDIR || nError == ENXIO || nError == ELOOP ? kStatusShortRead : nError;
  }
  if (!head.bWhole) {
    // A file that is too short gets no type, which is intended: it excludes small thumbnails.
    if (head.nReadError != 0) ReportLoss(SystemProblem(Problem::Step::Read, pszPath, head.nReadError));
    return kStatusShortRead;
  }
  if (const Row* pRow = FindRow(head.bytes.data(), BackupFileHead::kSize))
    strOutput = std::to_string(m_nFileCounter++) + "." + pRow->pszExtension;
  else
    ReportIfUnsound(pszPath);
  return kStatusOk;
}

int CFileTypeJudge::ParseFileBuf(const void* pData, uint32_t nLength, std::wstring& wstrOutput) {
  if (const Row* pRow = FindRow(pData, nLength)) {
    const std::wstring wstrExtension(pRow->pszExtension, pRow->pszExtension + strlen(pRow->pszExtension));
    rsb_wsprintf(wstrOutput, L"%lld.%S", static_cast<long long>(m_nFileCounter++), wstrExtension.c_str());
  }
  return kStatusOk;
}

int CFileTypeJudge::GetDataBufType(const void* pData, uint32_t nLength) {
  const Row* pRow = FindRow(pData, nLength);
  return pRow ? pRow->nType : kUnknown;
}

int CFileTypeJudge::GetExtendNameType(const char* pszExtension) {
  const Row* pRow = szExtendNameAndType;
  while (pRow->pszExtension && strcasecmp(pRow->pszExtension, pszExtension) != 0) ++pRow;
  return pRow->nType;
}
