#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

#include "TOMLDecoder/internal/TOMLDocument.h"

namespace toml {

/// Which bytes may stand in an unquoted key and in an unquoted value; the tables are indexed by the byte.
namespace CodeUnits {

using Table = std::array<bool, 256>;

constexpr Table tableOf(std::string_view others) {
  Table table{};
  for (std::size_t byte = '0'; byte <= '9'; ++byte) table[byte] = true;
  for (std::size_t byte = 'A'; byte <= 'Z'; ++byte) table[byte] = true;
  for (std::size_t byte = 'a'; byte <= 'z'; ++byte) table[byte] = true;
  for (const char byte : others) table[static_cast<unsigned char>(byte)] = true;
  return table;
}

inline constexpr Table isBareKeyChar = tableOf("-_");
inline constexpr Table isValueChar = tableOf("-_+.:");

}  // namespace CodeUnits

/// A piece of a document. Which line it stands on is counted when somebody asks (`TOMLDocument::lineNumber`).
struct Token {
  enum class Kind : std::uint32_t {
    dot,
    comma,
    equal,
    lbrace,
    rbrace,
    newline,
    lbracket,
    rbracket,
    string,   ///< with its quotes, whichever they are
    bareKey,  ///< a key or a value without quotes
    eof,
  };

  TextRange text;
  Kind kind = Kind::eof;
};

/// Finds where the tokens of a document begin and end, and no more: what a string or a number holds is
/// looked at when it is read. The zero byte after the text ends every scan.
class Lexer {
 public:
  /// `document` has its source, and outlives this.
  explicit Lexer(const TOMLDocument& document);

  /// In the place of a key a dot is a token, in the place of a value it is a part of one. Throws TOMLError
  /// where no token begins.
  Token nextToken(bool dotIsSpecial);
  /// Passes over newlines too.
  Token nextTokenOnAnyLine(bool dotIsSpecial);
  /// Passes over a comment and the newline; false if anything else stands there.
  bool takeLineEnd();
  /// What the next token on this line begins with; a zero byte at the end.
  char nextByte();
  /// True, and passed over, if the next token on this line is this one byte. Quicker than looking which
  /// token comes.
  bool take(char byte);
  /// The same, without a space before it.
  bool takeDirectly(char byte);

  /// Where the next token is looked for.
  std::uint32_t cursor() const { return place(at_); }

  [[noreturn]] void fail(std::uint32_t place, const char* message) const;

 private:
  static unsigned char code(char byte) { return static_cast<unsigned char>(byte); }

  const char* skipBlank(const char* at) const;
  const char* skipComment(const char* at) const;
  const char* skipStringBytes(const char* at, char quote) const;
  Token take(Token::Kind kind, const char* start, const char* end);
  Token takeKey(const char* start);
  Token takeBareValue(const char* start);
  Token takeDateAndTime(const char* start, const char* at);
  Token takeOther(const char* at, bool dotIsSpecial);
  Token takeNewline(const char* at);
  Token takeString(const char* at);
  Token takeLiteralString(const char* start);
  Token takeBasicString(const char* start);
  Token takeMultilineString(const char* start);
  const char* nextQuotes(const char* start, const char* at) const;
  [[noreturn]] void failAtLineEnd(const char* start, const char* at) const;
  [[noreturn]] void failAtByte(const char* at, bool dotIsSpecial) const;
  [[noreturn]] void fail(const char* at, const char* message) const { fail(place(at), message); }
  std::uint32_t place(const char* at) const { return static_cast<std::uint32_t>(at - begin_); }

  const TOMLDocument& document_;
  const char* begin_;
  const char* end_;
  const char* at_;
};

// What is done for every token stands here, so that it can be inlined into the parser's loops.

inline Token Lexer::nextToken(bool dotIsSpecial) {
  const char* const at = skipBlank(at_);
  if (dotIsSpecial) return CodeUnits::isBareKeyChar[code(*at)] ? takeKey(at) : takeOther(at, true);
  return CodeUnits::isValueChar[code(*at)] ? takeBareValue(at) : takeOther(at, false);
}

inline Token Lexer::nextTokenOnAnyLine(bool dotIsSpecial) {
  Token token = nextToken(dotIsSpecial);
  while (token.kind == Token::Kind::newline) token = nextToken(dotIsSpecial);
  return token;
}

inline bool Lexer::takeLineEnd() {
  at_ = skipBlank(at_);
  if (*at_ == '\n') {
    ++at_;
    return true;
  }
  if (*at_ != '\r') return at_ == end_;
  takeNewline(at_);
  return true;
}

inline char Lexer::nextByte() {
  at_ = skipBlank(at_);
  return *at_;
}

inline bool Lexer::take(char byte) {
  at_ = skipBlank(at_);
  return takeDirectly(byte);
}

inline bool Lexer::takeDirectly(char byte) {
  if (*at_ != byte) return false;
  ++at_;
  return true;
}

inline const char* Lexer::skipBlank(const char* at) const {
  while (*at == ' ' || *at == '\t') ++at;
  return *at == '#' ? skipComment(at) : at;
}

inline Token Lexer::take(Token::Kind kind, const char* start, const char* end) {
  at_ = end;
  // Stored as one word: a processor that stores two halves and then loads both as one has to wait.
  const std::uint64_t range = place(start) | (static_cast<std::uint64_t>(end - start) << 32);
  return {std::bit_cast<TextRange>(range), kind};
}

/// The byte here is a part of a key.
inline Token Lexer::takeKey(const char* start) {
  const char* at = start + 1;
  while (CodeUnits::isBareKeyChar[code(*at)]) ++at;
  return take(Token::Kind::bareKey, start, at);
}

/// The byte here is a part of a value.
inline Token Lexer::takeBareValue(const char* start) {
  const char* at = start + 1;
  while (CodeUnits::isValueChar[code(*at)]) ++at;
  if (at - start == 10 && *at == ' ' && start[4] == '-') return takeDateAndTime(start, at);
  return take(Token::Kind::bareKey, start, at);
}

}  // namespace toml
