#pragma once
#include <string>

#include "common/catalogue.h"
#include "common/layout.h"
#include "extract/chats.h"

namespace orvandel {

/// Reads the chats of WhatsApp's message store, "ChatStorage.sqlite". Lives on the stack for one call.
///
/// The store's tables and columns differ by version. Only the messages are needed: what else is missing
/// leaves out names or details of them. The formats are documented in docs/stores.md.
class WhatsAppChatReader {
 public:
  /// Adds a chat for each session with a message, under its Z_PK if that is free and has 32 bits, each newest
  /// first. Messages of an unknown session form a chat without a name; status updates are left out.
  ///
  /// In each record strName and strPhone are the other side's: in a message of the owner those of the chat.
  /// strChatName, strChatPhone and strChatTitle are set in the first record only. Dates are
  /// YYYY-MM-DD HH:MM:SS in UTC, empty for one that isn't in the years 0 to 9999.
  /// @param strPath narrow path of the store; one that is missing or can't be read adds nothing.
  void Read(const std::string& strPath, WhatsAppMap& chats);
};

/// Finds WhatsApp's message store: the first of its three places that the backup has.
/// @return its narrow path; empty if there is none.
std::string FindWhatsAppStore(const Catalogue& catalogue, const BackupLayout& layout);

}  // namespace orvandel
