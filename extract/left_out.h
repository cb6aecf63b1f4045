#pragma once
#include <cstdint>
#include <string>

// What the readers of stores leave out, since a category has no place for it. Each function reads a store
// once, reports nothing, and returns 0 for a store that is missing, damaged or without the tables.

namespace orvandel {

/// Number of messages with a text or an attachment that are in no conversation, because the store names no
/// sender for them (as for one's own messages in groups), or because they are in no chat. Reactions to other
/// messages don't count.
/// @param strPath narrow path of the message store.
uint64_t CountMessagesWithoutSender(const std::string& strPath);

/// Number of notes that have a body beside the snippet that CIPhoneNotes::GetNotesStoreInfo reads.
/// @param strPath narrow path of the store with ZICCLOUDSYNCINGOBJECT.
uint64_t CountNotesWithSnippetOnly(const std::string& strPath);

}  // namespace orvandel
