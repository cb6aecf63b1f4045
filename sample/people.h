#pragma once
#include <vector>

#include "sample/seeded_random.h"
#include "sample/stores.h"

/// Makes up people for the address book: first some that are told apart by hand (without name, without
/// number, with several numbers, CJK, names that differ only in case), then as many ordinary ones as it
/// takes.
std::vector<ContactsStore::Person> samplePeople(int count, SeededRandom& random);

/// @return the first number of a person; null when there is none.
QString firstPhone(const ContactsStore::Person& person);
