#include "TOMLDecoder/internal/Lexer.h"

#include <cstring>

#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/UTF8.h"
#include "TOMLDecoder/internal/Words.h"

namespace toml {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

/// A control character other than a tab; neither a comment nor a string may have one.
bool isControl(unsigned char byte) {
  return (byte < 0x20 && byte != '\t') || byte == 0x7F;
}

}  // namespace

Lexer::Lexer(const TOMLDocument& document)
    : document_(document),
      begin_(document.source.c_str()),
      end_(begin_ + document.source.size()),
      at_(begin_) {
  if (std::string_view(document.source).substr(0, 3) == byteOrderMark) at_ += 3;
}

Token Lexer::takeOther(const char* at, bool dotIsSpecial) {
  switch (*at) {
    case '\n':
    case '\r':
      return takeNewline(at);
    case '"':
    case '\'':
      return takeString(at);
    case ',':
      return take(Token::Kind::comma, at, at + 1);
    case '=':
      return take(Token::Kind::equal, at, at + 1);
    case '{':
      return take(Token::Kind::lbrace, at, at + 1);
    case '}':
      return take(Token::Kind::rbrace, at, at + 1);
    case '[':
      return take(Token::Kind::lbracket, at, at + 1);
    case ']':
      return take(Token::Kind::rbracket, at, at + 1);
    case '.':
      return take(Token::Kind::dot, at, at + 1);
    default:
      if (at == end_) return take(Token::Kind::eof, at, at);
      failAtByte(at, dotIsSpecial);
  }
}

void Lexer::fail(std::uint32_t place, const char* message) const {
  throw TOMLError({.kind = TOMLError::Reason::Kind::syntax,
                   .lineNumber = document_.lineNumber(place),
                   .message = message});
}

const char* Lexer::skipComment(const char* at) const {
  for (;;) {
    while (end_ - at >= 8) {
      const std::uint64_t word = Words::load(at);
      const std::uint64_t stops = Words::bytesBelow(word, 0x20) | Words::bytesEqual(word, 0x7F);
      at += stops == 0 ? 8 : Words::firstOf(stops);
      if (stops != 0) break;
    }
    while (at < end_ && !isControl(code(*at)) && *at != '\t') ++at;
    if (*at != '\t') break;
    ++at;
  }
  if (*at == '\n' || *at == '\r' || at == end_) return at;
  fail(at, "control characters are not allowed in comments");
}

/// Stops at a quote, a backslash and a control character, or at the end.
const char* Lexer::skipStringBytes(const char* at, char quote) const {
  while (end_ - at >= 8) {
    const std::uint64_t word = Words::load(at);
    const std::uint64_t stops =
        Words::bytesEqual(word, quote) | Words::bytesEqual(word, '\\') | Words::bytesBelow(word, 0x20);
    if (stops != 0) return at + Words::firstOf(stops);
    at += 8;
  }
  while (at < end_ && *at != quote && *at != '\\' && code(*at) >= 0x20) ++at;
  return at;
}

Token Lexer::takeNewline(const char* at) {
  if (*at == '\n') return take(Token::Kind::newline, at, at + 1);
  if (at[1] != '\n') fail(at, "bare carriage return is not allowed");
  return take(Token::Kind::newline, at, at + 2);
}

/// A date may be followed by one space and a time, 1979-05-27 07:32:00
/// (https://toml.io/en/v1.0.0#offset-date-time).
Token Lexer::takeDateAndTime(const char* start, const char* at) {
  if (start[7] == '-' && isDigit(at[1])) {
    ++at;
    while (CodeUnits::isValueChar[code(*at)]) ++at;
  }
  return take(Token::Kind::bareKey, start, at);
}

Token Lexer::takeString(const char* at) {
  if (at[1] == *at && at[2] == *at) return takeMultilineString(at);
  return *at == '"' ? takeBasicString(at) : takeLiteralString(at);
}

Token Lexer::takeLiteralString(const char* start) {
  const char* at = start + 1;
  while (*(at = skipStringBytes(at, '\'')) != '\'') {
    if (*at == '\n' || at == end_ || (*at == '\r' && at[1] == '\n')) failAtLineEnd(start, at);
    ++at;
  }
  return take(Token::Kind::string, start, at + 1);
}

Token Lexer::takeBasicString(const char* start) {
  const char* at = start + 1;
  while (*(at = skipStringBytes(at, '"')) != '"') {
    if (*at == '\n' || at == end_ || (*at == '\r' && at[1] == '\n')) failAtLineEnd(start, at);
    at += *at == '\\' && (at[1] == '"' || at[1] == '\\') ? 2 : 1;
  }
  return take(Token::Kind::string, start, at + 1);
}

Token Lexer::takeMultilineString(const char* start) {
  const char quote = *start;
  const char* at = start + 3;
  for (;;) {
    at = nextQuotes(start, at);
    std::ptrdiff_t quotes = 1;
    while (at[quotes] == quote) ++quotes;
    at += quotes;
    if (quotes >= 3 && quotes <= 5) return take(Token::Kind::string, start, at);
    if (quotes > 5) {
      fail(at, quote == '"'
                   ? "basic multiline strings cannot contain more than 2 consecutive double quotes"
                   : "literal multiline strings cannot contain more than 2 consecutive single quotes");
    }
  }
}

/// The next quote of a multi-line string that isn't escaped by a backslash.
const char* Lexer::nextQuotes(const char* start, const char* at) const {
  if (*start == '\'') {
    const void* const found = std::memchr(at, '\'', static_cast<std::size_t>(end_ - at));
    if (!found) fail(start, "unterminated triple-s-quote");
    return static_cast<const char*>(found);
  }
  while (*(at = skipStringBytes(at, '"')) != '"') {
    if (at == end_) fail(start, "unterminated triple-d-quote");
    at += *at == '\\' && (at[1] == '"' || at[1] == '\\') ? 2 : 1;
  }
  return at;
}

void Lexer::failAtLineEnd(const char* start, const char* at) const {
  if (at == end_) fail(start, "missing closing quote");
  fail(start, *start == '"' ? "unterminated quote" : "unterminated s-quote");
}

void Lexer::failAtByte(const char* at, bool dotIsSpecial) const {
  using Kind = TOMLError::Reason::Kind;
  const std::uint32_t line = document_.lineNumber(place(at));
  if (dotIsSpecial) throw TOMLError({.kind = Kind::badKey, .lineNumber = line});
  const std::string_view rest(at, static_cast<std::size_t>(end_ - at));
  const std::string_view found = rest.substr(0, UTF8::firstCharacter(rest));
  throw TOMLError({.kind = Kind::invalidCharacter, .lineNumber = line, .found = std::string(found)});
}

}  // namespace toml
