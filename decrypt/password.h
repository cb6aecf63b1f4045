#pragma once
#include <vector>

#include "decrypt/crypto.h"

/// The forms in which a password is worth trying, the given one first.
///
/// A device makes its keys from composed UTF-8. What reaches this process may be something else: macOS hands
/// arguments over decomposed, and a locale with another encoding hands over that.
/// @param given bytes as they came.
/// @param pszLocaleEncoding name of the encoding that they may be in instead of UTF-8, as iconv has it.
/// @return each form once.
std::vector<Secret> PasswordForms(const Secret& given, const char* pszLocaleEncoding);
