#include "extract/whatsapp_people.h"

#include <algorithm>
#include <string_view>

#include "common/store.h"
#include "common/text.h"

namespace orvandel {

namespace {

bool EndsWith(const std::string& strText, std::string_view end) {
  return strText.size() >= end.size() && strText.compare(strText.size() - end.size(), end.size(), end) == 0;
}

/// The number in a person's address. A device of the person follows a ":".
std::string PhoneIn(const std::string& strAddress) {
  static constexpr size_t kLongest = 32;  // real ones have at most 15 digits
  if (IsGroupAddress(strAddress)) return {};
  return strAddress.substr(0, std::min(kLongest, strAddress.find_first_of("@:")));
}

/// True for the base64 text that newer stores have in place of a push name, as far as it can be told from a
/// name.
bool LooksEncoded(const std::string& strText) {
  static constexpr size_t kShortest = 8;
  bool bDigit = false, bInnerCapital = false;
  for (size_t i = 0; i < strText.size(); ++i) {
    const char n = strText[i];
    const bool bCapital = n >= 'A' && n <= 'Z', bSign = n == '+' || n == '/' || n == '=';
    const bool bNumber = n >= '0' && n <= '9';
    if (!bCapital && !bSign && !bNumber && !(n >= 'a' && n <= 'z')) return false;
    bDigit = bDigit || bNumber || bSign;
    bInnerCapital = bInnerCapital || (bCapital && i > 0);
  }
  const bool bPadded = !strText.empty() && strText.back() == '=';
  return strText.size() >= kShortest && strText.size() % 4 == 0 && (bPadded || (bDigit && bInnerCapital));
}

bool LooksLikeAName(const std::string& strText) {
  const auto isControl = [](char n) { return static_cast<unsigned char>(n) < 0x20 || n == 0x7F; };
  return !strText.empty() && !std::any_of(strText.begin(), strText.end(), isControl) &&
         !LooksEncoded(strText);
}

}  // namespace

std::string ShortenedName(std::string strName) {
  static constexpr size_t kLongest = 400;  // bytes: a subject has at most 100 characters
  if (strName.size() <= kLongest) return strName;
  size_t nEnd = kLongest;
  while (NarrowIsUtf8() && nEnd > 0 && (strName[nEnd] & 0xC0) == 0x80) --nEnd;  // not within a character
  strName.resize(nEnd);
  return strName;
}

bool IsGroupAddress(const std::string& strAddress) {
  return EndsWith(strAddress, "@g.us");
}

WhatsAppPeople::WhatsAppPeople(const std::string& strPath) {
  ReadPushNames(strPath);
  ReadMembers(strPath);
}

void WhatsAppPeople::ReadPushNames(const std::string& strPath) {
  const StoreTable table(strPath, "ZWAPROFILEPUSHNAME");
  if (!table.Has("ZJID") || !table.Has("ZPUSHNAME")) return;
  StoreQuery query(strPath, "SELECT ZJID, ZPUSHNAME FROM ZWAPROFILEPUSHNAME");
  while (query.Next()) {
    const std::string strAddress = query.Narrow(0), strName = query.Narrow(1);
    if (!strAddress.empty() && !strName.empty()) m_pushNames.emplace(strAddress, ShortenedName(strName));
  }
}

void WhatsAppPeople::ReadMembers(const std::string& strPath) {
  const StoreTable table(strPath, "ZWAGROUPMEMBER");
  if (!table.Has("Z_PK") || !table.Has("ZMEMBERJID")) return;
  const std::string strStatement = "SELECT Z_PK, ZMEMBERJID, " + table.Column("ZCHATSESSION") + ", " +
                                   table.Column("ZCONTACTNAME") + ", " + table.Column("ZFIRSTNAME") +
                                   " FROM ZWAGROUPMEMBER";
  StoreQuery query(strPath, strStatement.c_str());
  while (query.Next()) {
    std::string strName = query.Narrow(3);
    if (strName.empty()) strName = query.Narrow(4);
    const Number nPerson = Add(query.Narrow(1), strName);
    if (!m_byMember.Add(query.Integer64(0), nPerson)) continue;
    if (!query.IsNull(2)) m_byGroup[query.Integer64(2)].push_back(nPerson);
  }
}

WhatsAppPeople::Number WhatsAppPeople::Add(const std::string& strAddress, const std::string& strName) {
  Person person{strAddress, PhoneIn(strAddress), ShortenedName(strName)};
  const auto itPushName = m_pushNames.find(strAddress);
  if (person.strName.empty() && itPushName != m_pushNames.end()) person.strName = itPushName->second;
  m_people.push_back(std::move(person));
  return static_cast<Number>(m_people.size() - 1);
}

WhatsAppPeople::Number WhatsAppPeople::OfAddress(const std::string& strAddress) {
  if (strAddress.empty() || IsGroupAddress(strAddress)) return kNobody;
  const auto [it, bNew] = m_byAddress.try_emplace(strAddress, kNobody);
  if (bNew) it->second = Add(strAddress, {});
  return it->second;
}

WhatsAppPeople::Number WhatsAppPeople::OfPushName(const std::string& strPushName) {
  if (!LooksLikeAName(strPushName)) return kNobody;
  const auto [it, bNew] = m_byPushName.try_emplace(strPushName, kNobody);
  if (bNew) it->second = Add({}, strPushName);
  return it->second;
}

WhatsAppPeople::Number WhatsAppPeople::OfMember(int64_t nMember) const {
  const Number nPerson = m_byMember.Find(nMember);
  return nPerson == NumberIndex::kNone ? kNobody : nPerson;
}

const std::vector<WhatsAppPeople::Number>& WhatsAppPeople::Members(int64_t nSession) const {
  static const std::vector<Number> kNone;
  const auto it = m_byGroup.find(nSession);
  return it == m_byGroup.end() ? kNone : it->second;
}

void WhatsAppPeople::AddPushName(Number nPerson, const std::string& strPushName) {
  Person& person = m_people[nPerson];
  if (nPerson == kNobody || !person.strName.empty() || !LooksLikeAName(strPushName)) return;
  person.strName = ShortenedName(strPushName);
  if (!person.strAddress.empty()) m_pushNames.emplace(person.strAddress, person.strName);
}

void WhatsAppPeople::SpreadPushNames() {
  for (Person& person : m_people) {
    if (!person.strName.empty() || person.strAddress.empty()) continue;
    const auto it = m_pushNames.find(person.strAddress);
    if (it != m_pushNames.end()) person.strName = it->second;
  }
}

const std::string& WhatsAppPeople::NameOf(Number nPerson) const {
  const Person& person = m_people[nPerson];
  return person.strName.empty() ? person.strPhone : person.strName;
}

}  // namespace orvandel
