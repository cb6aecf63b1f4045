#include "extract/whatsapp_people.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "common/store.h"

namespace orvandel {

namespace {

bool EndsWith(const std::string& strText, std::string_view end) {
  return strText.size() >= end.size() && strText.compare(strText.size() - end.size(), end.size(), end) == 0;
}

/// The number in a person's address. A device of the person follows a ":".
std::string PhoneIn(const std::string& strAddress) {
  return IsGroupAddress(strAddress) ? std::string() : strAddress.substr(0, strAddress.find_first_of("@:"));
}

/// Tells names from the base64 text that newer stores have instead.
bool LooksLikeAName(const std::string& strText) {
  static constexpr char kOnlyEncoded[] = "0123456789+/=";
  const auto isControl = [](char n) { return static_cast<unsigned char>(n) < 0x20 || n == 0x7F; };
  if (strText.empty() || std::any_of(strText.begin(), strText.end(), isControl)) return false;
  bool bSuspect = false;
  for (const char n : strText) {
    const bool bLetter = (n >= 'A' && n <= 'Z') || (n >= 'a' && n <= 'z');
    if (!bLetter && !strchr(kOnlyEncoded, n)) return true;  // not base64
    bSuspect = bSuspect || !bLetter;
  }
  return !bSuspect;
}

/// Cuts a name at a length that no real one has, since it is repeated in each message of its owner.
std::string Shortened(std::string strName) {
  static constexpr size_t kLongest = 1000;  // bytes
  if (strName.size() <= kLongest) return strName;
  size_t nEnd = kLongest;
  while (nEnd > 0 && (strName[nEnd] & 0xC0) == 0x80) --nEnd;  // not within a character
  strName.resize(nEnd);
  return strName;
}

}  // namespace

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
    std::string strName = query.Narrow(1);
    if (!strName.empty()) m_pushNames.emplace(query.Narrow(0), std::move(strName));
  }
}

void WhatsAppPeople::ReadMembers(const std::string& strPath) {
  const StoreTable table(strPath, "ZWAGROUPMEMBER");
  if (!table.Has("Z_PK") || !table.Has("ZMEMBERJID")) return;
  const auto column = [&](const char* pszName) {
    return std::string(", ") + (table.Has(pszName) ? pszName : "NULL");
  };
  const std::string strStatement = "SELECT Z_PK, ZMEMBERJID" + column("ZCHATSESSION") +
                                   column("ZCONTACTNAME") + column("ZFIRSTNAME") + " FROM ZWAGROUPMEMBER";
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
  Person person{Shortened(PhoneIn(strAddress)), Shortened(strName), !strName.empty()};
  const auto itPushName = m_pushNames.find(strAddress);
  if (!person.bNamed && itPushName != m_pushNames.end()) {
    person.strName = Shortened(itPushName->second);
    person.bNamed = true;
  }
  m_people.push_back(std::move(person));
  return static_cast<Number>(m_people.size() - 1);
}

WhatsAppPeople::Number WhatsAppPeople::OfAddress(const std::string& strAddress) {
  if (strAddress.empty() || IsGroupAddress(strAddress)) return kNobody;
  const auto [it, bNew] = m_byAddress.try_emplace(strAddress, kNobody);
  if (bNew) it->second = Add(strAddress, {});
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
  if (nPerson == kNobody || person.bNamed || !LooksLikeAName(strPushName)) return;
  person.strName = Shortened(strPushName);
  person.bNamed = true;
}

const std::string& WhatsAppPeople::NameOf(Number nPerson) const {
  const Person& person = m_people[nPerson];
  return person.bNamed ? person.strName : person.strPhone;
}

}  // namespace orvandel
