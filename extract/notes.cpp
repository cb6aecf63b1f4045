#include "extract/notes.h"

#include <strings.h>

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "common/status.h"
#include "common/store.h"
#include "common/text.h"
#include "extract/sorting.h"

using namespace orvandel;

namespace {

constexpr char kNotes[] =
    "SELECT ZNOTE.ZCREATIONDATE ,ZNOTE.ZTITLE, ZNOTEBODY.ZCONTENT "
    "from ZNOTE LEFT JOIN ZNOTEBODY ON ZBODY = ZNOTEBODY.Z_PK order by ZNOTE.ZCREATIONDATE desc";

// 978307200: seconds from 1970-01-01 to 2001-01-01, the epoch of the store.
constexpr char kCloudNotes[] =
    "SELECT ZTITLE1, ZSNIPPET, "
    "datetime(ZCREATIONDATE + 978307200, 'unixepoch') AS XFORMATTEDDATESTRING,"
    "datetime(ZCREATIONDATE1 + 978307200, 'unixepoch') AS XFORMATTEDDATESTRING1 "
    "FROM ZICCLOUDSYNCINGOBJECT order by XFORMATTEDDATESTRING1 desc";

struct Replacement {
  const char* pszFrom;
  const char* pszTo;
};

// The ampersand is last, so that an encoded entity isn't decoded twice. The first two have no semicolon, so
// the one in the text remains after the character.
constexpr Replacement kEntities[] = {
    {"&#39", "'"}, {"&quot", "\""}, {"&lt;", "<"}, {"&gt;", ">"}, {"&nbsp;", " "}, {"&amp;", "&"},
};

// Replaced after the entities, so that tags encoded as entities are included. Other tags stay.
constexpr Replacement kTags[] = {{"<div>", "\n"}, {"</div>", ""}, {"<br>", "\n"}};

template <size_t kCount>
void ReplaceAll(QString& qstrText, const Replacement (&replacements)[kCount]) {
  for (const Replacement& replacement : replacements)
    qstrText.replace(QLatin1String(replacement.pszFrom), QLatin1String(replacement.pszTo));
}

std::string PlainText(QString qstrHtml) {
  DecodeHtmlSpecialChars(qstrHtml);
  ReplaceAll(qstrHtml, kTags);
  return ToNarrow(qstrHtml);
}

/// Formats a date of the first store: seconds since 2001, converted to local time as if since 1970, then 31
/// years added to the year. Leap years differ, so the result may be off by a day.
std::string ShiftedDate(int nSeconds) {
  static constexpr int kYearBase = 1931;
  const auto nTime = static_cast<time_t>(nSeconds);
  tm parts{};
  localtime_r(&nTime, &parts);
  char szDate[96];
  snprintf(szDate, sizeof szDate, "%04d-%02d-%02d %02d:%02d:%02d", parts.tm_year + kYearBase,
           parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
  return szDate;
}

void AddIfNotEmpty(std::vector<__NOTES__>& notes, __NOTES__ note) {
  if (note.strTitle.empty() && note.strContent.empty()) return;
  notes.push_back(std::move(note));
}

void SortNotes(std::vector<__NOTES__>& notes) {
  SortRecords(notes, [](const __NOTES__& a, const __NOTES__& b) { return VectorCmp(a, b); });
}

}  // namespace

bool VectorCmp(const __NOTES__& first, const __NOTES__& second) {
  return strcasecmp(first.strDate.c_str(), second.strDate.c_str()) > 0;
}

void DecodeHtmlSpecialChars(QString& qstrText) {
  ReplaceAll(qstrText, kEntities);
}

int CIPhoneNotes::GetNotesInfo(const std::string& strPath, std::vector<__NOTES__>& notes) {
  {
    StoreQuery query(strPath, kNotes);
    while (query.Next()) {
      __NOTES__ note;
      note.strDate = ShiftedDate(query.Integer(0));
      note.strTitle = PlainText(query.Text(1));
      note.strContent = PlainText(query.Text(2));
      AddIfNotEmpty(notes, std::move(note));
    }
  }
  SortNotes(notes);
  return kStatusOk;
}

int CIPhoneNotes::GetNotesStoreInfo(const std::string& strPath, std::vector<__NOTES__>& notes) {
  {
    StoreQuery query(strPath, kCloudNotes);
    while (query.Next()) {
      __NOTES__ note;
      note.strTitle = PlainText(query.Text(0));
      note.strContent = PlainText(query.Text(1));
      note.strDate = query.Narrow(3);
      AddIfNotEmpty(notes, std::move(note));
    }
  }
  SortNotes(notes);
  return kStatusOk;
}
