#pragma once
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "extract/number_index.h"

namespace orvandel {

/// The people of WhatsApp's store: partners of chats, and members of groups. A person is identified by the
/// number that the functions return, and may have several.
///
/// A person's names, in order of preference: the one in the device's address book, the "push name" that
/// people give themselves, the phone number. Tables and columns that a store lacks leave names out. Names and
/// addresses are narrow. An address (JID) is "4915112345678@s.whatsapp.net" for a person, and ends with
/// "@g.us" for a group.
class WhatsAppPeople {
 public:
  using Number = uint32_t;
  static constexpr Number kNobody = 0;  ///< has neither a name nor a phone number

  /// Reads the members of all groups, and the push names. @param strPath narrow path of the store.
  explicit WhatsAppPeople(const std::string& strPath);

  /// Adds a person. @param strName in the address book; may be empty.
  Number Add(const std::string& strAddress, const std::string& strName);
  /// The person with an address; added if new. kNobody for an empty address, and for a group's.
  Number OfAddress(const std::string& strAddress);
  /// Somebody of whom only a push name is known, as stored with a message; added if new. kNobody if it isn't
  /// a name.
  Number OfPushName(const std::string& strPushName);
  /// @param nMember ZWAGROUPMEMBER.Z_PK. @return kNobody if there is none.
  Number OfMember(int64_t nMember) const;
  /// The members of a group in order of the store. @param nSession ZWACHATSESSION.Z_PK.
  const std::vector<Number>& Members(int64_t nSession) const;

  /// True while only the phone number is known.
  bool IsNameless(Number nPerson) const { return m_people[nPerson].strName.empty(); }
  /// Adds a push name that was stored with a message of a nameless person, unless it isn't a name: newer
  /// stores keep encoded data in its place.
  void AddPushName(Number nPerson, const std::string& strPushName);
  /// Gives the push names that were added to others with the same address. Call it after the last
  /// AddPushName.
  void SpreadPushNames();

  /// The name, or else the phone number.
  const std::string& NameOf(Number nPerson) const;
  /// Digits, without a "+"; empty if unknown.
  const std::string& PhoneOf(Number nPerson) const { return m_people[nPerson].strPhone; }

 private:
  struct Person {
    std::string strAddress;
    std::string strPhone;
    std::string strName;
  };

  void ReadPushNames(const std::string& strPath);
  void ReadMembers(const std::string& strPath);

  std::vector<Person> m_people = std::vector<Person>(1);
  std::unordered_map<std::string, std::string> m_pushNames;  // by address
  std::unordered_map<std::string, Number> m_byAddress;       // those added by OfAddress
  std::unordered_map<std::string, Number> m_byPushName;      // those added by OfPushName
  NumberIndex m_byMember;                                    // by Z_PK
  NumberMap<std::vector<Number>> m_byGroup;                  // by Z_PK of the session
};

/// True for the address of a group.
bool IsGroupAddress(const std::string& strAddress);

/// Cuts a name at a length that real ones don't have, since it is repeated in each message of its owner.
std::string ShortenedName(std::string strName);

}  // namespace orvandel
