#pragma once
#include <cstdint>
#include <optional>
#include <string>

#include "extract/number_index.h"

namespace orvandel {

/// What WhatsApp's store keeps of the file, contact or place that a message carries. All texts are narrow.
struct WhatsAppMedia {
  std::string strFile;  ///< name of the file, without folders
  std::string strCaption;
  std::string strContact;  ///< name of a contact
};

/// The media of a store, by ZWAMESSAGE.Z_PK.
class WhatsAppMediaItems {
 public:
  /// Reads what the store has of the table and its columns. @param strPath narrow path of the store.
  explicit WhatsAppMediaItems(const std::string& strPath);

  /// The item of a message; each is returned once only. @return an empty one if there is none.
  WhatsAppMedia Take(int64_t nMessage);

 private:
  NumberMap<WhatsAppMedia> m_items;
};

constexpr int kWhatsAppGroupEvent = 6;  ///< the type of an event in a group: a new subject, a new member, ...

/// The text to show for a message: its own, or else what it is, such as "[Photo] IMG_0012.jpg At the
/// lake".
/// @param type  ZMESSAGETYPE; nullopt if the store doesn't say.
/// @param event ZGROUPEVENTTYPE; nullopt if the store doesn't say.
/// @return never empty.
std::string WhatsAppText(const std::string& strText, std::optional<int> type, std::optional<int> event,
                         const WhatsAppMedia& media);

}  // namespace orvandel
