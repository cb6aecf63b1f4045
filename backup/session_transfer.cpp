// The session's output: copies of whole stores, a plain transcript of a chat, and the operations of its
// interface that do nothing.

#include <cerrno>
#include <cstdio>
#include <memory>

#include "backup/session.h"
#include "common/file.h"
#include "common/status.h"

using namespace orvandel;

namespace {

constexpr char kUnknownName[] = "Unknown";
constexpr int kTranscriptCounterStep = 100;

/// Writer of a message. For the owner of the phone only the first letter of "Me". Required for output
/// compatibility.
std::string TranscriptParty(const __WHATSAPP_MESSAGE__& message) {
  if (message.nIsFromMe != 0) return "M";
  return message.strName.empty() || message.strName == kUnknownName ? message.strPhone : message.strName;
}

}  // namespace

int CIphoneBackupFile::RecoverySMSMessage(const char* pszDestination) {
  return CIPhoneMessage().SaveSMSCsvFile(StorePath(kMessageStore), pszDestination, m_nMaxMessageId);
}

int CIphoneBackupFile::RecoveryPersonContacts(const char* pszDestination) {
  return CIPhoneContacts().SaveContactsCsvFile(StorePath(kContactsStore), pszDestination, m_nMaxContactId);
}

int CIphoneBackupFile::RecoveryWhatsAppMessage(unsigned int nChatId, const char16_t* pPath,
                                               RecoveryCallback pfnCallback, void* pContext) {
  std::u16string wstrPath = pPath;
  const std::unique_ptr<FILE, decltype(&fclose)> pFile(_wfopen(pPath, L"w+,ccs=UTF-8"), &fclose);
  if (!pFile) {
    const int nError = errno;
    if (pfnCallback) pfnCallback(pContext, 100, nError, wstrPath.data());
    return nError;
  }
  const auto itChat = m_mapWhatsApp.find(nChatId);
  if (itChat == m_mapWhatsApp.end()) return kStatusOk;

  int nStatus = kStatusOk;
  long long nCounter = 0;
  for (const __WHATSAPP_MESSAGE__& message : itChat->second) {
    fprintf(pFile.get(), "%s %s:\n", message.strDate.c_str(), TranscriptParty(message).c_str());
    fprintf(pFile.get(), "    %s\n\n", message.strContent.c_str());
    fflush(pFile.get());
    nCounter += kTranscriptCounterStep;
    const auto nPercent = static_cast<int>(nCounter / static_cast<long long>(itChat->second.size()));
    if (pfnCallback) nStatus = pfnCallback(pContext, nPercent, kStatusOk, wstrPath.data());
    if (nStatus != kStatusOk) break;
  }
  if (nStatus > 0 && pfnCallback) pfnCallback(pContext, 100, nStatus, wstrPath.data());
  return nStatus;
}

int CIphoneBackupFile::DecryptBackupFile(const char*, const char16_t*, std::string&) {
  return kStatusOk;
}

int CIphoneBackupFile::PreView(const char16_t*, const char16_t*, ProgressCallback, void*) {
  return kStatusOk;
}

int CIphoneBackupFile::Recovery(const char16_t*, const char16_t*, RecoveryCallback, void*) {
  return kStatusOk;
}

int CIphoneBackupFile::RecoveryQQMessage(const char16_t*, const char16_t*, const char16_t*, RecoveryCallback,
                                         void*) {
  return kStatusOk;
}

int CIphoneBackupFile::RecoveryWeiXinMessage(const char16_t*, const char16_t*, const char16_t*,
                                             RecoveryCallback, void*) {
  return kStatusOk;
}
