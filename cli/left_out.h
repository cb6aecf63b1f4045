#pragma once
#include <QJsonObject>
#include <cstdint>
#include <map>
#include <string>

#include "cli/wanted_stores.h"
#include "extract/unknown_media.h"

namespace orvandel {

/// What a backup contains but no category does.
struct LeftOut {
  std::map<std::string, uint64_t> files;  ///< photos and videos of unknown type, by extension (UnknownMedia)
  uint64_t nMessagesWithoutSender = 0;
  uint64_t nNotesWithSnippetOnly = 0;

  bool IsEmpty() const { return files.empty() && nMessagesWithoutSender == 0 && nNotesWithSnippetOnly == 0; }
};

/// Restricts a collector to files of wanted categories. @param isWanted empty for all.
UnknownMedia::IsWanted MediaOf(const WantedCategory& isWanted);

/// The value of "leftOut" in JSON; without members that are 0.
QJsonObject LeftOutObject(const LeftOut& leftOut);

/// Prints a line on standard error, unless nothing is left out.
void PrintLeftOut(const LeftOut& leftOut);

}  // namespace orvandel
