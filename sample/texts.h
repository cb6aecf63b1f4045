#pragma once
#include <QString>
#include <vector>

#include "sample/seeded_random.h"

// What people write, made up.

/// @return one message. Never null, never empty.
QString messageText(SeededRandom& random);

struct NoteText {
  QString title;
  QString body;     ///< HTML; null where the note has only a title
  QString snippet;  ///< the beginning in plain text; null where there is none
};

/// The notes of the sample, always the same: markup, entities, CJK, title only, body only.
std::vector<NoteText> sampleNotes();
