#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvandel {

/// A pattern for names of the form "Domain/relative/path", both UTF-8.
///
/// "*" and "?" match within a segment, "**" as a whole segment matches any number of segments, and at the end
/// at least one. "[a-z]" matches one character of a set, "[!a]" one that isn't in it, and a backslash takes
/// the next character literally. A "[" without its "]" is literal. A pattern without "/" matches the last
/// segment at any depth; one with a "/" before its end matches from the beginning, with or without a leading
/// "/". A "/" at the end restricts the pattern to folders.
///
/// Case-sensitive. "?" and sets match one character, or one byte that isn't UTF-8. The time of a match is at
/// most proportional to the length of the pattern times that of the name. Immutable, so thread-safe.
class Glob {
 public:
  explicit Glob(std::string_view strPattern);

  /// @param bFolder whether the name is that of a folder.
  bool Matches(std::string_view strName, bool bFolder) const;

 private:
  struct Token {
    enum class Kind { Byte, AnyCharacter, AnyText, Set };
    Kind kind = Kind::Byte;
    char nByte = 0;
    bool bNegated = false;
    std::vector<std::pair<uint32_t, uint32_t>> ranges;  // inclusive code points, of a set
  };
  struct Segment {
    bool bAnyDepth = false;  // "**"
    std::vector<Token> tokens;
  };

  static Segment ParseSegment(std::string_view strText);
  static bool ParseSet(std::string_view strText, size_t& nPosition, Token& token);
  static bool MatchesOne(const Token& token, std::string_view strText, size_t& nPosition);
  static bool MatchesSegment(const std::vector<Token>& tokens, std::string_view strText);
  bool MatchesPath(std::string_view strName) const;

  bool m_bFoldersOnly = false;
  bool m_bLastSegment = false;  // the pattern has one segment, compared to the last one of the name
  std::vector<Segment> m_segments;
};

}  // namespace orvandel
