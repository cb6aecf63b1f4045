#include "cli/wanted_stores.h"

#include <algorithm>

#include "common/layout.h"

namespace orvandel {

bool StoreUse::IsWanted(const WantedCategory& isWanted) const {
  return !isWanted || std::any_of(categories.begin(), categories.end(), isWanted);
}

const std::vector<StoreUse>& StoreUses() {
  static const std::vector<StoreUse> stores = {
      {kContactsStore, {kContacts, kMessages, kCallHistory}},
      {kMessageStore, {kMessages}},
      {kCallStore, {kCallHistory}},
      {kCallStoreFallback, {kCallHistory}},
      {kNotesStore, {kNotes}},
      {kNotesCloudStore, {kNotes}},
      {kWhatsAppStore, {kWhatsApp}},
      {kWhatsAppEarlyStore, {kWhatsApp}},
      {kWhatsAppBusinessStore, {kWhatsApp}},
  };
  return stores;
}

const StoreUse* FindStoreUse(const std::string& strFileId) {
  for (const StoreUse& store : StoreUses()) {
    if (strFileId == store.pszId) return &store;
  }
  return nullptr;
}

}  // namespace orvandel
