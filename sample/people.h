#pragma once
#include <vector>

#include "sample/seeded_random.h"
#include "sample/stores.h"

namespace orvandel {

/// Generates people for the address book: first some edge cases (without name, without number, with several
/// numbers, CJK, names that differ only in case), then ordinary ones up to count.
std::vector<ContactsStore::Person> samplePeople(int count, SeededRandom& random);

/// @return the first number of a person; null if there is none.
QString firstPhone(const ContactsStore::Person& person);

}  // namespace orvandel
