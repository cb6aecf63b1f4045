#include "cli/glob.h"

#include <algorithm>

namespace orvandel {

namespace {

constexpr uint32_t kInvalidByte = 0x110000;  // added to a byte that isn't UTF-8; above all code points

/// Reads the character at a position and moves behind it. A byte that doesn't begin a whole character is one
/// by itself.
uint32_t NextCharacter(std::string_view strText, size_t& nPosition) {
  const auto nFirst = static_cast<unsigned char>(strText[nPosition++]);
  if (nFirst < 0x80) return nFirst;
  const size_t nMore = nFirst >= 0xF0 ? 3 : nFirst >= 0xE0 ? 2 : nFirst >= 0xC2 ? 1 : 0;
  if (nMore == 0 || nFirst > 0xF4 || strText.size() - nPosition < nMore) return kInvalidByte + nFirst;
  uint32_t nCode = nFirst & (0x3FU >> nMore);
  for (size_t i = 0; i < nMore; ++i) {
    const auto nByte = static_cast<unsigned char>(strText[nPosition + i]);
    if ((nByte & 0xC0) != 0x80) return kInvalidByte + nFirst;
    nCode = nCode << 6 | (nByte & 0x3FU);
  }
  nPosition += nMore;
  return nCode;
}

/// The segment that begins at a position. @param nStart moves behind its "/"; beyond the end after the last.
std::string_view NextSegment(std::string_view strName, size_t& nStart) {
  const size_t nEnd = std::min(strName.find('/', nStart), strName.size());
  const std::string_view strSegment = strName.substr(nStart, nEnd - nStart);
  nStart = nEnd + 1;
  return strSegment;
}

}  // namespace

Glob::Glob(std::string_view strPattern) {
  if (!strPattern.empty() && strPattern.back() == '/') {
    m_bFoldersOnly = true;
    strPattern.remove_suffix(1);
  }
  m_bLastSegment = strPattern.find('/') == std::string_view::npos;
  if (!strPattern.empty() && strPattern.front() == '/') strPattern.remove_prefix(1);
  for (size_t nStart = 0; nStart <= strPattern.size();) {
    const std::string_view strSegment = NextSegment(strPattern, nStart);
    const bool bLast = nStart > strPattern.size();
    if (strSegment != "**" || m_bLastSegment) {
      m_segments.push_back(ParseSegment(strSegment));
      continue;
    }
    const bool bAgain = !m_segments.empty() && m_segments.back().bAnyDepth;
    if (!bAgain) m_segments.push_back({true, {}});
    if (bLast) m_segments.push_back(ParseSegment("*"));
  }
}

Glob::Segment Glob::ParseSegment(std::string_view strText) {
  Segment segment;
  for (size_t i = 0; i < strText.size();) {
    Token token;
    const char nByte = strText[i++];
    if (nByte == '*') {
      token.kind = Token::Kind::AnyText;
      if (!segment.tokens.empty() && segment.tokens.back().kind == token.kind) continue;
    } else if (nByte == '?') {
      token.kind = Token::Kind::AnyCharacter;
    } else if (nByte == '[' && ParseSet(strText, i, token)) {
      token.kind = Token::Kind::Set;
    } else {
      token.nByte = nByte == '\\' && i < strText.size() ? strText[i++] : nByte;
    }
    segment.tokens.push_back(std::move(token));
  }
  return segment;
}

/// @param nPosition behind the "["; moves behind the "]". @return false when there is none.
bool Glob::ParseSet(std::string_view strText, size_t& nPosition, Token& token) {
  size_t i = nPosition;
  token.bNegated = i < strText.size() && (strText[i] == '!' || strText[i] == '^');
  if (token.bNegated) ++i;
  const auto nextMember = [&] {
    if (strText[i] == '\\' && i + 1 < strText.size()) ++i;
    return NextCharacter(strText, i);
  };
  token.ranges.clear();
  for (bool bFirst = true; i < strText.size(); bFirst = false) {
    if (strText[i] == ']' && !bFirst) {
      nPosition = i + 1;
      return true;
    }
    const uint32_t nLow = nextMember();
    const bool bRange = i + 1 < strText.size() && strText[i] == '-' && strText[i + 1] != ']';
    if (bRange) ++i;
    token.ranges.emplace_back(nLow, bRange ? nextMember() : nLow);
  }
  token = {};
  return false;
}

bool Glob::MatchesOne(const Token& token, std::string_view strText, size_t& nPosition) {
  if (nPosition == strText.size()) return false;
  if (token.kind == Token::Kind::Byte) return strText[nPosition] == token.nByte && (++nPosition, true);
  const uint32_t nCode = NextCharacter(strText, nPosition);
  if (token.kind == Token::Kind::AnyCharacter) return true;
  const bool bMember = std::any_of(token.ranges.begin(), token.ranges.end(), [&](const auto& range) {
    return range.first <= nCode && nCode <= range.second;
  });
  return bMember != token.bNegated;
}

bool Glob::MatchesSegment(const std::vector<Token>& tokens, std::string_view strText) {
  // After a mismatch only the last "*" takes one more character: giving more to an earlier one can't help.
  size_t nToken = 0, nText = 0;
  size_t nAfterStar = SIZE_MAX, nStarEnd = 0;
  for (;;) {
    if (nToken < tokens.size() && tokens[nToken].kind == Token::Kind::AnyText) {
      nAfterStar = ++nToken;
      nStarEnd = nText;
      if (nToken == tokens.size()) return true;
      continue;
    }
    if (nToken == tokens.size() ? nText == strText.size() : MatchesOne(tokens[nToken], strText, nText)) {
      if (nToken++ == tokens.size()) return true;
      continue;
    }
    if (nAfterStar == SIZE_MAX || nStarEnd == strText.size()) return false;
    NextCharacter(strText, nStarEnd);
    nToken = nAfterStar;
    nText = nStarEnd;
  }
}

bool Glob::MatchesPath(std::string_view strName) const {
  // The same as in MatchesSegment, with segments instead of characters.
  size_t nSegment = 0, nName = 0;
  size_t nAfterDepth = SIZE_MAX, nDepthEnd = 0;
  const size_t nEnd = strName.size() + 1;  // behind the last segment
  for (;;) {
    if (nSegment < m_segments.size() && m_segments[nSegment].bAnyDepth) {
      nAfterDepth = ++nSegment;
      nDepthEnd = nName;
      continue;
    }
    const bool bBothEnd = nSegment == m_segments.size() && nName == nEnd;
    if (bBothEnd) return true;
    if (nSegment < m_segments.size() && nName < nEnd &&
        MatchesSegment(m_segments[nSegment].tokens, NextSegment(strName, nName))) {
      ++nSegment;
      continue;
    }
    if (nAfterDepth == SIZE_MAX || nDepthEnd == nEnd) return false;
    NextSegment(strName, nDepthEnd);
    nSegment = nAfterDepth;
    nName = nDepthEnd;
  }
}

bool Glob::Matches(std::string_view strName, bool bFolder) const {
  if (m_bFoldersOnly && !bFolder) return false;
  if (!m_bLastSegment) return MatchesPath(strName);
  return MatchesSegment(m_segments.front().tokens, strName.substr(strName.rfind('/') + 1));
}

}  // namespace orvandel
