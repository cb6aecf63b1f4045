#include "backup/digest.h"

#include <cstring>
#include <memory>

namespace {

constexpr int kBlockWords = 16;
constexpr int kRounds = 80;
constexpr int kWordDigits = 8;

/// One 4-byte word as the digest reads it: bytes are signed chars, so a byte from 0x80 up sets all bits above
/// it. The top byte has none above it.
uint32_t SignedWord(uint32_t nWord) {
  if (nWord & 0x00800000) nWord |= 0xFF000000;
  if (nWord & 0x00008000) nWord |= 0xFFFF0000;
  if (nWord & 0x00000080) nWord |= 0xFFFFFF00;
  return nWord;
}

uint32_t BigEndianWord(const unsigned char* p) {
  return static_cast<uint32_t>(p[0]) << 24 | static_cast<uint32_t>(p[1]) << 16 |
         static_cast<uint32_t>(p[2]) << 8 | p[3];
}

unsigned long long WordCount(unsigned long long nLength) {
  return (((nLength + 8) >> 2) & ~15ULL) + kBlockWords;
}

void FillWords(const unsigned char* pInput, unsigned long long nLength, uint32_t* pWords,
               unsigned long long nCount) {
  const unsigned long long nWhole = nLength / 4;
  for (unsigned long long i = 0; i < nWhole; ++i) pWords[i] = SignedWord(BigEndianWord(pInput + 4 * i));
  memset(pWords + nWhole, 0, (nCount - nWhole) * sizeof *pWords);

  unsigned char tail[4] = {};
  memcpy(tail, pInput + 4 * nWhole, nLength % 4);
  pWords[nWhole] = SignedWord(BigEndianWord(tail)) | (0x80U << (24 - 8 * (nLength % 4)));
  pWords[nCount - 1] = static_cast<uint32_t>(nLength * 8);
}

}  // namespace

unsigned long long add(unsigned long long nLeft, unsigned long long nRight) {
  return nLeft + nRight;
}

unsigned long long UnsigedRightMove(unsigned long long nValue, int nCount) {
  return static_cast<uint32_t>(nValue) >> nCount;
}

unsigned long long rol(unsigned long long nValue, int nCount) {
  return UnsigedRightMove(nValue, 32 - nCount) | (nValue << nCount);
}

unsigned long long ft(int nRound, unsigned long long b, unsigned long long c, unsigned long long d) {
  if (nRound < 20) return (b & c) | (d & ~b);
  if (nRound >= 40 && nRound < 60) return ((d | c) & b) | (d & c);
  return b ^ c ^ d;
}

unsigned long long kt(int nRound) {
  if (nRound < 20) return 0x5A827999ULL;
  if (nRound < 40) return 0x6ED9EBA1ULL;
  if (nRound < 60) return 0xFFFFFFFF8F1BBCDCULL;
  return 0xFFFFFFFFCA62C1D6ULL;
}

char* Uint64ToHexStr(unsigned long long nValue, char* pszOutput, int nLength) {
  if (!pszOutput || nLength < kWordDigits) return pszOutput;
  for (int i = 0; i < kWordDigits; ++i)
    pszOutput[i] = "0123456789abcdef"[UnsigedRightMove(nValue, 28 - 4 * i) & 0xF];
  return pszOutput;
}

void AlignSHA1(const unsigned char* pInput, uint32_t* pWords, unsigned long long& nCount) {
  const size_t nLength = strlen(reinterpret_cast<const char*>(pInput));
  if (pWords)
    FillWords(pInput, nLength, pWords, nCount);
  else
    nCount = WordCount(nLength);
}

namespace {

struct State {
  uint32_t a, b, c, d, e;
};

/// A range of rounds, which share one function and constant.
template <int kFrom, int kTo>
inline void RunRounds(State& s, const uint32_t* pSchedule) {
#pragma GCC unroll 20
  for (int t = kFrom; t < kTo; ++t) {
    const unsigned long long nMixed = add(add(rol(s.a, 5), ft(kFrom, s.b, s.c, s.d)), add(s.e, kt(kFrom)));
    const auto nTemp = static_cast<uint32_t>(add(nMixed, pSchedule[t]));
    s.e = s.d;
    s.d = s.c;
    s.c = static_cast<uint32_t>(rol(s.b, 30));
    s.b = s.a;
    s.a = nTemp;
  }
}

void DigestBlock(const uint32_t* pBlock, State& state) {
  uint32_t schedule[kRounds];
  memcpy(schedule, pBlock, kBlockWords * sizeof *pBlock);
#pragma GCC unroll 64
  for (int t = kBlockWords; t < kRounds; ++t) {
    const uint32_t nMixed = schedule[t - 3] ^ schedule[t - 8] ^ schedule[t - 14] ^ schedule[t - 16];
    schedule[t] = static_cast<uint32_t>(rol(nMixed, 1));
  }
  State s = state;
  RunRounds<0, 20>(s, schedule);
  RunRounds<20, 40>(s, schedule);
  RunRounds<40, 60>(s, schedule);
  RunRounds<60, 80>(s, schedule);
  state = {state.a + s.a, state.b + s.b, state.c + s.c, state.d + s.d, state.e + s.e};
}

}  // namespace

char* SHA1(const unsigned char* pInput, char* pszOutput, int nLength) {
  if (!pInput) return pszOutput;
  // Names of a manifest fit on the stack, which saves an allocation for each.
  static constexpr unsigned long long kStackWords = 16ULL * kBlockWords;
  const size_t nInput = strlen(reinterpret_cast<const char*>(pInput));
  const unsigned long long nCount = WordCount(nInput);
  uint32_t stackWords[kStackWords];
  std::unique_ptr<uint32_t[]> heapWords(nCount > kStackWords ? new uint32_t[nCount] : nullptr);
  uint32_t* pWords = heapWords ? heapWords.get() : stackWords;
  FillWords(pInput, nInput, pWords, nCount);

  State state{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  for (unsigned long long i = 0; i < nCount; i += kBlockWords) DigestBlock(pWords + i, state);

  const uint32_t words[] = {state.a, state.b, state.c, state.d, state.e};
  int nOffset = 0;
  for (uint32_t nWord : words) {
    if (pszOutput) Uint64ToHexStr(nWord, pszOutput + nOffset, nLength - nOffset);
    nOffset += kWordDigits;
  }
  return pszOutput;
}
