#pragma once
#include <cstdint>

// The digest that names the files of a backup with a binary manifest: SHA-1 of domain, "-", relative path.
// For bytes below 0x80 it is SHA-1. A byte from 0x80 up is sign-extended over the bytes to its left in its
// 4-byte word. Identifiers of non-ASCII names depend on that, so a library's SHA-1 can't replace it.

/// @param pInput    terminated text; null leaves the output unchanged.
/// @param pszOutput receives 8 lower-case hexadecimal digits for each state word that fits, not terminated.
/// @param nLength   size of pszOutput in bytes: 40 holds the whole digest, 20 its first 16 digits.
/// @return pszOutput.
char* SHA1(const unsigned char* pInput, char* pszOutput, int nLength);

/// Pads a message to whole blocks of 16 words.
/// @param pWords  null to query the number of words; else receives them, big-endian.
/// @param nCount  receives the number of words when pWords is null.
void AlignSHA1(const unsigned char* pInput, uint32_t* pWords, unsigned long long& nCount);

// Building blocks. Only the low 32 bits of the arguments are used.
unsigned long long add(unsigned long long nLeft, unsigned long long nRight);
unsigned long long UnsigedRightMove(unsigned long long nValue, int nCount);
unsigned long long rol(unsigned long long nValue, int nCount);
unsigned long long ft(int nRound, unsigned long long b, unsigned long long c, unsigned long long d);
unsigned long long kt(int nRound);

/// Writes the low 32 bits as 8 lower-case hexadecimal digits, not terminated. Writes nothing when pszOutput
/// is null or nLength is below 8. @return pszOutput.
char* Uint64ToHexStr(unsigned long long nValue, char* pszOutput, int nLength);
