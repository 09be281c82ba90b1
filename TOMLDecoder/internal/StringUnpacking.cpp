#include "TOMLDecoder/TOMLError.h"
#include "TOMLDecoder/internal/UTF8.h"
#include "TOMLDecoder/internal/Unpacking.h"
#include "TOMLDecoder/internal/Words.h"

namespace toml::StringUnpacking {

namespace {

using Kind = TOMLError::Reason::Kind;

[[noreturn]] void fail(Kind kind, std::string_view found) {
  throw TOMLError({.kind = kind, .found = std::string(found)});
}

bool isNewline(std::string_view text) {
  return text.substr(0, 1) == "\n" || text.substr(0, 2) == "\r\n";
}

/// What stands between the quotes, without a newline right after three opening ones
/// (https://toml.io/en/v1.0.0#string).
std::string_view contentOf(std::string_view token) {
  if (!isMultiline(token)) return token.substr(1, token.size() - 2);
  std::string_view content = token.substr(3, token.size() - 6);
  if (isNewline(content)) content.remove_prefix(content.front() == '\n' ? 1 : 2);
  return content;
}

bool isPlain(char byte) {
  return static_cast<unsigned char>(byte) >= 0x20 && byte != 0x7F && byte != '\\';
}

/// How many bytes from the start stand for themselves, whatever kind of string it is.
std::size_t plainPrefix(std::string_view text) {
  std::size_t length = 0;
  while (text.size() - length >= 8) {
    const std::uint64_t word = Words::load(text.data() + length);
    const std::uint64_t stops =
        Words::bytesBelow(word, 0x20) | Words::bytesEqual(word, 0x7F) | Words::bytesEqual(word, '\\');
    if (stops != 0) return length + static_cast<std::size_t>(Words::firstOf(stops));
    length += 8;
  }
  while (length < text.size() && isPlain(text[length])) ++length;
  return length;
}

int hexDigit(char byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return -1;
}

/// Reads the text between the quotes from front to back.
class Unpacking {
 public:
  Unpacking(std::string_view content, bool hasEscapes, bool hasLines)
      : rest_(content), hasEscapes_(hasEscapes), hasLines_(hasLines) {}

  std::string text() {
    for (;;) {
      const std::size_t plain = plainPrefix(rest_);
      text_ += rest_.substr(0, plain);
      rest_.remove_prefix(plain);
      if (rest_.empty()) return std::move(text_);
      if (rest_.front() == '\\' && hasEscapes_) {
        rest_.remove_prefix(1);
        takeEscape();
      } else {
        takeByte();
      }
    }
  }

 private:
  void takeByte() {
    const char byte = rest_.front();
    const bool isAllowed = byte == '\\' || byte == '\t' || (hasLines_ && isNewline(rest_));
    if (!isAllowed) fail(Kind::invalidCharacter, rest_.substr(0, 1));
    const std::size_t length = byte == '\r' ? 2 : 1;
    text_ += rest_.substr(0, length);
    rest_.remove_prefix(length);
  }

  void takeEscape() {
    static constexpr std::string_view letters = "btnfr\"\\";
    static constexpr std::string_view meanings = "\b\t\n\f\r\"\\";
    const char letter = rest_.empty() ? '\0' : rest_.front();
    if (const auto index = letters.find(letter); index != std::string_view::npos) {
      text_ += meanings[index];
      rest_.remove_prefix(1);
    } else if (letter == 'u' || letter == 'U') {
      takeCode(letter == 'u' ? 4 : 8);
    } else if (!hasLines_ || !takeLineEnd()) {
      fail(Kind::illegalEscapeCharacter, rest_.substr(0, UTF8::firstCharacter(rest_)));
    }
  }

  /// A backslash at the end of a line removes all spaces, tabs and newlines up to the next character.
  bool takeLineEnd() {
    std::string_view behind = rest_;
    while (!behind.empty() && (behind.front() == ' ' || behind.front() == '\t')) behind.remove_prefix(1);
    if (!isNewline(behind)) return false;
    while (!behind.empty() && (behind.front() == ' ' || behind.front() == '\t' || isNewline(behind))) {
      behind.remove_prefix(behind.front() == '\r' ? 2 : 1);
    }
    rest_ = behind;
    return true;
  }

  void takeCode(std::size_t length) {
    const std::string_view digits = rest_.substr(1, length);
    if (digits.size() < length) fail(Kind::expectedHexCharacters, digits);
    std::uint32_t code = 0;
    for (const char digit : digits) {
      if (hexDigit(digit) < 0) fail(Kind::invalidHexCharacters, digits);
      code = (code << 4) | static_cast<std::uint32_t>(hexDigit(digit));
    }
    if ((code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) fail(Kind::illegalUCSCode, digits);
    UTF8::append(text_, code);
    rest_.remove_prefix(1 + length);
  }

  std::string_view rest_;
  bool hasEscapes_;
  bool hasLines_;
  std::string text_;
};

}  // namespace

std::string unpack(std::string_view token) {
  if (token.empty() || (token.front() != '"' && token.front() != '\'')) {
    throw TOMLError({.kind = Kind::invalidString, .message = std::string(token)});
  }
  const std::string_view content = contentOf(token);
  if (plainPrefix(content) == content.size()) return std::string(content);
  return Unpacking(content, token.front() == '"', isMultiline(token)).text();
}

std::optional<std::string_view> plainText(std::string_view token) {
  const std::string_view content = contentOf(token);
  if (plainPrefix(content) == content.size()) return content;
  return std::nullopt;
}

bool isMultiline(std::string_view token) {
  return token.size() >= 6 && token[1] == token.front() && token[2] == token.front();
}

}  // namespace toml::StringUnpacking
