#include "cli/entry_text.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "cli/json_stream.h"
#include "cli/output.h"
#include "common/text.h"

namespace orvandel {

namespace {

constexpr int64_t kEndOfYears = 253402300800;  // 10000-01-01, in seconds since 1970

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

void AppendDigits(int nNumber, int nDigits, std::string& strOut) {
  const size_t nStart = strOut.size();
  for (; nDigits > 0; --nDigits, nNumber /= 10)
    strOut.insert(nStart, 1, static_cast<char>('0' + nNumber % 10));
}

}  // namespace

void AppendPrintable(const std::string& strName, std::string& strOut) {
  strOut += IsPlain(strName) ? strName : Printable(FromNarrow(strName)).toStdString();
}

void AppendJsonText(const std::string& strText, std::string& strOut) {
  if (!IsPlain(strText) || strText.find_first_of("\"\\") != std::string::npos) {
    strOut += ToJson(FromNarrow(strText)).toStdString();
    return;
  }
  strOut.append(1, '"').append(strText).append(1, '"');
}

std::string IsoTime(int64_t nSeconds) {
  const auto nTime = static_cast<time_t>(nSeconds);
  tm parts;
  std::string strTime;
  if (nSeconds < 0 || nSeconds >= kEndOfYears || !gmtime_r(&nTime, &parts)) return strTime;
  const struct {
    int nNumber, nDigits;
    char nBefore;
  } numbers[] = {{parts.tm_mon + 1, 2, '-'},
                 {parts.tm_mday, 2, '-'},
                 {parts.tm_hour, 2, 'T'},
                 {parts.tm_min, 2, ':'},
                 {parts.tm_sec, 2, ':'}};
  AppendDigits(parts.tm_year + 1900, 4, strTime);
  for (const auto& number : numbers) {
    strTime += number.nBefore;
    AppendDigits(number.nNumber, number.nDigits, strTime);
  }
  return strTime + 'Z';
}

std::string OctalPermissions(uint32_t nMode) {
  char szDigits[8];
  snprintf(szDigits, sizeof szDigits, "%04o", nMode & 07777U);
  return szDigits;
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
