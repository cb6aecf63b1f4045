#include "tests/faults/exceptions.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "tests/faults/tree.h"

namespace orvandel {

namespace {

constexpr size_t kShortestFile = 512;  // bytes: a shorter one has no type and isn't listed

constexpr size_t kHead = 6;  // length of "SQLite", with which a store begins

constexpr char kEncryptionRule[] = "a contacts store too short for a head counts as an encrypted one";
constexpr char kAbsent[] = "a file that the backup lacks is passed over";
constexpr char kNames[] = "a contacts store that goes while the backup is read leaves names out";
constexpr char kShort[] = "a file shorter than 512 bytes has no type and isn't listed";
constexpr char kAsItIs[] = "a file cut short in a plain backup is copied as it is";
constexpr char kTitle[] = "a key that \"Info.plist\" lacks stays empty";
constexpr char kEntryEnd[] = "a binary manifest cut exactly between two entries is a shorter manifest";
constexpr char kNoMessageFolder[] = "the message store isn't copied when no conversation could be written";
constexpr char kNoInfo[] =
    "what is no regular file counts as a missing \"Info.plist\" in the list of backups";

/// True if a path doesn't exist, and its folder isn't a link.
bool IsGone(const std::string& strPath) {
  struct stat info;
  const std::string strFolder = strPath.substr(0, strPath.rfind('/'));
  if (lstat(strFolder.c_str(), &info) == 0 && !S_ISDIR(info.st_mode)) return false;
  return lstat(strPath.c_str(), &info) != 0 && errno == ENOENT;
}

bool FeedsFrom(const Reference& reference, const std::string& strProduct, const Fault& fault) {
  const auto it = reference.sources.find(strProduct);
  return it != reference.sources.end() && it->second.count(fault.strObject) != 0;
}

bool IsStore(const Reference& reference, const std::string& strObject) {
  return std::any_of(reference.objects.begin(), reference.objects.end(), [&](const auto& object) {
    return object.second == strObject && object.first.find("store") != std::string::npos;
  });
}

bool IsContactsStore(const Reference& reference, const std::string& strObject) {
  const auto contacts = reference.objects.find("contacts store");
  return contacts != reference.objects.end() && contacts->second == strObject;
}

/// No product of the file exists, so it was removed before it was first read.
bool NothingIsMadeOf(const Reference& reference, const Fault& fault, const Run& run) {
  return std::none_of(run.products.begin(), run.products.end(), [&](const auto& product) {
    const auto it = reference.sources.find(product.first);
    return it != reference.sources.end() && it->second == std::set<std::string>{fault.strObject};
  });
}

/// True for a binary manifest that ends exactly after an entry.
bool EndsBetweenEntries(const std::string& strBytes) {
  constexpr size_t kHeader = 6, kStrings = 5, kBlock = 40;
  size_t nAt = kHeader;
  const auto skipStrings = [&](size_t nStrings) {
    for (; nStrings > 0 && nAt + 2 <= strBytes.size(); --nStrings) {
      const size_t nLength =
          static_cast<unsigned char>(strBytes[nAt]) * 256u + static_cast<unsigned char>(strBytes[nAt + 1]);
      nAt += 2 + (nLength == 0xFFFF ? 0 : nLength);
    }
    return nStrings == 0;
  };
  while (nAt < strBytes.size()) {
    if (!skipStrings(kStrings) || nAt + kBlock > strBytes.size()) return false;
    nAt += kBlock;
    if (!skipStrings(2u * static_cast<unsigned char>(strBytes[nAt - 1]))) return false;
  }
  return nAt == strBytes.size() && nAt > kHeader;
}

bool IsCutBetweenEntries(const Fault& fault, const std::string& strBackup) {
  return fault.effect == Fault::kCut && fault.strObject == "/Manifest.mbdb" &&
         EndsBetweenEntries(BytesOf(strBackup + fault.strObject));
}

/// Conversations were tried, and all were reported as failed.
bool NoConversationIsWritten(const Run& run) {
  const auto isMessage = [](const auto& product) { return product.first.rfind("/Message/", 0) == 0; };
  const std::string& strOut = run.process.strOut;
  const size_t nFailed = strOut.find("/out/Message/");
  return std::none_of(run.products.begin(), run.products.end(), isMessage) && nFailed != std::string::npos &&
         strOut.find("Failed\t") != std::string::npos;
}

/// A page from the end of its title, which contains the display name of the device. The tag also occurs
/// earlier, in the page's script.
std::string BehindTitle(const std::string& strPage) {
  return strPage.substr(std::min(strPage.rfind("</h1>"), strPage.size()));
}

}  // namespace

std::string ExceptionFor(const Reference& reference, const Variant& variant, const Fault& fault,
                         const Run& run, const std::string& strProduct, const std::string& strBackup) {
  const auto product = run.products.find(strProduct);
  if (fault.effect == Fault::kCut && fault.strObject == "/Info.plist" && product != run.products.end() &&
      BehindTitle(product->second) == BehindTitle(reference.run.products.at(strProduct)))
    return kTitle;
  if (IsCutBetweenEntries(fault, strBackup)) return kEntryEnd;
  if (strProduct == "/Message/sms.db" && NoConversationIsWritten(run)) return kNoMessageFolder;
  if (!FeedsFrom(reference, strProduct, fault)) return {};
  const std::string strObject = strBackup + fault.strObject;
  if (fault.effect == Fault::kGone && IsGone(strObject) && NothingIsMadeOf(reference, fault, run))
    return kAbsent;
  const bool bNames = strProduct.rfind("/CallHistory/", 0) == 0 || strProduct.rfind("/Message/", 0) == 0;
  if (fault.effect == Fault::kGone && IsGone(strObject) && bNames && product != run.products.end() &&
      IsContactsStore(reference, fault.strObject))
    return kNames;
  if (fault.effect != Fault::kCut || variant.bEncrypted) return {};
  const std::string strBytes = BytesOf(strObject);
  if (strBytes.size() < kShortestFile && !IsStore(reference, fault.strObject)) return kShort;
  if (product != run.products.end() && product->second == strBytes) return kAsItIs;
  return {};
}

std::string OutputException(const Reference& reference, Command command, const Variant& variant,
                            const Fault& fault, const Run&, const std::string& strBackup) {
  const std::string& strObject = fault.strObject;
  if (strObject == "/Info.plist") {
    if (fault.effect == Fault::kCut) return kTitle;
    if (fault.effect == Fault::kReplaced && command == Command::Backups) return kNoInfo;
    if (fault.effect == Fault::kGone && IsGone(strBackup + strObject) && command == Command::Backups)
      return kAbsent;
    return {};
  }
  if (IsCutBetweenEntries(fault, strBackup)) return kEntryEnd;
  if (command == Command::Backups) {
    const bool bCut = fault.effect == Fault::kCut && BytesOf(strBackup + strObject).size() < kHead;
    return IsContactsStore(reference, strObject) && bCut ? kEncryptionRule : "";
  }
  if (IsNamedFile(strObject)) return {};
  if (fault.effect == Fault::kGone && IsGone(strBackup + strObject)) return kAbsent;
  if (fault.effect != Fault::kCut || variant.bEncrypted || IsStore(reference, strObject)) return {};
  return BytesOf(strBackup + strObject).size() < kShortestFile ? kShort : kAsItIs;
}

}  // namespace orvandel
