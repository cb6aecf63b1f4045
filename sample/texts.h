#pragma once
#include <QString>
#include <vector>

#include "sample/seeded_random.h"

// Generated texts of messages and notes.

namespace orvandel {

/// @return one message; never null or empty.
QString messageText(SeededRandom& random);

struct NoteText {
  QString title;
  QString body;     ///< HTML; null if the note has only a title
  QString snippet;  ///< the beginning in plain text; null if there is none
};

/// The constant notes of the sample: markup, entities, CJK, title only, body only.
std::vector<NoteText> sampleNotes();

}  // namespace orvandel
