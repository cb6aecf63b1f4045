#include "cli/entry_text.h"

#include <algorithm>
#include <ctime>

#include "cli/json_text.h"
#include "cli/output.h"
#include "common/text.h"

namespace orvandel {

namespace {

/// True for printable ASCII, the same in every encoding in use.
bool IsPlain(const std::string& strText) {
  return std::all_of(strText.begin(), strText.end(), [](char nByte) { return nByte >= ' ' && nByte < 0x7F; });
}

struct KindName {
  char nLetter;
  const char* pszName;
};

KindName NameOf(ManifestEntry::Kind kind) {
  switch (kind) {
    case ManifestEntry::Kind::File:
      return {'-', "file"};
    case ManifestEntry::Kind::Folder:
      return {'d', "folder"};
    case ManifestEntry::Kind::Link:
      return {'l', "link"};
    default:
      return {'?', "unknown"};
  }
}

void AppendMode(const ManifestEntry& entry, std::string& strOut) {
  static constexpr char kLetters[] = "rwxrwxrwx";
  strOut += NameOf(entry.kind).nLetter;
  for (int i = 0; i < 9; ++i)
    strOut += entry.nMode == 0 ? '?' : (entry.nMode >> (8 - i) & 1) != 0 ? kLetters[i] : '-';
}

/// Appends a member of a JSON object, unless it is empty.
void AppendMember(const char* pszKey, const std::string& strValue, std::string& strOut) {
  if (strValue.empty()) return;
  strOut.append(",\"").append(pszKey).append("\":");
  AppendJsonText(strValue, strOut);
}

/// Without the closing bracket.
void OpenNameJson(const ManifestEntry& entry, std::string& strOut) {
  strOut += "{\"domain\":";
  AppendJsonText(entry.strDomain, strOut);
  strOut += ",\"path\":";
  AppendJsonText(entry.strPath, strOut);
}

void AppendDigits(int nNumber, size_t nDigits, std::string& strOut) {
  strOut.resize(strOut.size() + nDigits);
  for (size_t i = strOut.size(); nDigits > 0; --nDigits, nNumber /= 10)
    strOut[--i] = static_cast<char>('0' + nNumber % 10);
}

}  // namespace

void AppendPrintable(const std::string& strName, std::string& strOut) {
  strOut += IsPlain(strName) ? strName : Printable(FromNarrow(strName)).toStdString();
}

std::string IsoTime(int64_t nSeconds) {
  const auto nTime = static_cast<time_t>(nSeconds);
  tm parts;
  std::string strTime;
  if (nSeconds < 0 || nSeconds >= kEndOfYears || !gmtime_r(&nTime, &parts)) return strTime;
  const struct {
    int nNumber;
    char nBefore;
  } numbers[] = {{parts.tm_mon + 1, '-'},
                 {parts.tm_mday, '-'},
                 {parts.tm_hour, 'T'},
                 {parts.tm_min, ':'},
                 {parts.tm_sec, ':'}};
  AppendDigits(parts.tm_year + 1900, 4, strTime);
  for (const auto& number : numbers) {
    strTime += number.nBefore;
    AppendDigits(number.nNumber, 2, strTime);
  }
  return strTime + 'Z';
}

std::string OctalPermissions(uint32_t nMode) {
  std::string strDigits(4, '0');
  for (size_t i = 0; i < strDigits.size(); ++i)
    strDigits[i] = static_cast<char>('0' + (nMode >> (3 * (3 - i)) & 7));
  return strDigits;
}

void AppendEntryLine(const ManifestEntry& entry, const std::string& strName, std::optional<bool> isPresent,
                     std::string& strOut) {
  const std::string strTime = IsoTime(entry.nModified);
  AppendMode(entry, strOut);
  strOut.append(1, '\t').append(entry.nSize == UINT64_MAX ? "-" : std::to_string(entry.nSize));
  strOut.append(1, '\t').append(strTime.empty() ? "-" : strTime).append(1, '\t');
  AppendPrintable(entry.strId, strOut);
  strOut.append(!isPresent ? "\t-\t" : *isPresent ? "\tpresent\t" : "\tmissing\t");
  AppendPrintable(strName, strOut);
  if (entry.kind == ManifestEntry::Kind::Link) {
    strOut += '\t';
    AppendPrintable(entry.strTarget, strOut);
  }
  strOut += '\n';
}

void AppendEntryJson(const ManifestEntry& entry, std::optional<bool> isPresent, std::string& strOut) {
  OpenNameJson(entry, strOut);
  strOut.append(",\"kind\":\"").append(NameOf(entry.kind).pszName).append(1, '"');
  if (entry.nSize != UINT64_MAX) strOut.append(",\"size\":").append(std::to_string(entry.nSize));
  AppendMember("modified", IsoTime(entry.nModified), strOut);
  if (entry.nMode != 0) AppendMember("mode", OctalPermissions(entry.nMode), strOut);
  AppendMember("id", entry.strId, strOut);
  if (isPresent) strOut.append(",\"present\":").append(*isPresent ? "true" : "false");
  AppendMember("target", entry.strTarget, strOut);
  strOut += "}\n";
}

void AppendNameJson(const ManifestEntry& entry, std::string& strOut) {
  OpenNameJson(entry, strOut);
  strOut += "}\n";
}

}  // namespace orvandel
