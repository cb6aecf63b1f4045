#pragma once
#include <cstdint>

// The digest that names the files of a backup with a binary manifest: SHA-1 of domain, "-", relative path.
// For input below 0x80 it is SHA-1. A byte from 0x80 on spreads its sign over the bytes to its left in its
// 4-byte word; identifiers of names beyond ASCII depend on that, so no library digest can take its place.

/// @param pInput    terminated text. Null leaves the output untouched.
/// @param pszOutput receives 8 lower-case hexadecimal digits for each state word that fits, with no
/// terminator.
/// @param nLength   room in pszOutput: 40 takes the whole digest, 20 its first 16 digits.
/// @return pszOutput.
char* SHA1(const unsigned char* pInput, char* pszOutput, int nLength);

/// Pads a message to whole blocks of 16 words.
/// @param pWords  null to ask for the number of words; else receives them, big-endian bytes in each.
/// @param nCount  receives the number of words when pWords is null.
void AlignSHA1(const unsigned char* pInput, uint32_t* pWords, unsigned long long& nCount);

// The building blocks. Only the low 32 bits of a value count; what stands above them is never looked at.
unsigned long long add(unsigned long long nLeft, unsigned long long nRight);
unsigned long long UnsigedRightMove(unsigned long long nValue, int nCount);
unsigned long long rol(unsigned long long nValue, int nCount);
unsigned long long ft(int nRound, unsigned long long b, unsigned long long c, unsigned long long d);
unsigned long long kt(int nRound);

/// Writes the low 32 bits as 8 lower-case hexadecimal digits, with no terminator.
/// Writes nothing to null or into less room than 8. @return pszOutput.
char* Uint64ToHexStr(unsigned long long nValue, char* pszOutput, int nLength);
