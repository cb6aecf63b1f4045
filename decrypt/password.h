#pragma once
#include <vector>

#include "decrypt/crypto.h"

namespace orvandel {

/// The forms of a password to try, the given one first.
///
/// Devices derive keys from composed UTF-8 (NFC). Arguments may be decomposed, as on macOS, or in the
/// locale's encoding.
/// @param given the password's bytes as received.
/// @param pszLocaleEncoding iconv's name of the encoding that they may be in instead of UTF-8.
/// @return the distinct forms.
std::vector<Secret> PasswordForms(const Secret& given, const char* pszLocaleEncoding);

}  // namespace orvandel
