#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "TOMLDecoder/TOMLKey.h"

namespace toml {

/// Everything that parsing, reading and decoding throw.
class TOMLError : public std::exception {
 public:
  struct Reason {
    enum class Kind {
      arrayOutOfBound,            ///< `index`, `bound`
      badKey,                     ///< `lineNumber`
      expectedHexCharacters,      ///< `found`
      illegalEscapeCharacter,     ///< `found`
      illegalUCSCode,             ///< `found`
      internalError,              ///< `lineNumber`: a fault of the reader; no document is known to cause it
      invalidBool,                ///< `message`: the token
      invalidCharacter,           ///< `found`
      invalidDateTime,            ///< `message`: the text breaks a rule of dates and times
      invalidDateTime3,           ///< `message`: a date or time, but not of the kind that was asked for
      invalidDateTimeComponents,  ///< `message`: numbers that make no date or time
      invalidFloat,               ///< `message`
      invalidHexCharacters,       ///< `found`
      invalidInteger,             ///< `message`
      invalidNumber,              ///< `message`: a number that the type asked for can't hold
      invalidString,              ///< `message`: the token
      invalidValueInTable,        ///< `key`, `found`: the token is no value of any kind
      keyExists,                  ///< `lineNumber`
      keyNotFoundInTable,         ///< `key`, `expected`
      syntax,                     ///< `lineNumber`, `message`
      typeMismatch,               ///< `message`; also the error of a check of one's own (`Decoding::fail`)
      typeMismatchInArray,        ///< `lineNumber`, `index`, `expected`
      typeMismatchInTable,        ///< `key`, `expected`
      invalidUTF8,                ///< `lineNumber`
      notReallyCodable,
    };

    Kind kind;
    std::uint32_t lineNumber = 0;  ///< the line that the text begins with; 0 if it tells none
    std::string message{};         ///< for a kind without a `message` above: replaces its usual text
    /// Where another type was asked for, what stands there: "table", "array", "string", "integer", … For the
    /// kinds with a `found` above, the text that is wrong.
    std::string found{};
    std::string key{};
    std::string expected{};
    std::size_t index = 0;
    std::size_t bound = 0;

    bool operator==(const Reason&) const = default;
  };

  explicit TOMLError(Reason why);

  /// "(Line 3) Syntax error: bare carriage return is not allowed"; without the line if the reason has none.
  std::string text() const;
  /// All that is known, for people: the line, the text, what was found and the path.
  /// "(Line 3) Invalid integer: invalid digit for base 10: '.' (found float, at servers[2].port)"
  const char* what() const noexcept override { return what_.c_str(); }
  /// "servers[2].port"; empty for the root, and for an error of parsing.
  std::string path() const { return pathText(codingPath); }

  // The same error with what a caller further out knows. What is known already stays.
  TOMLError at(std::uint32_t line) const;
  TOMLError at(std::vector<TOMLKey> path) const;
  /// The line of the table or the array in which something is wrong or missing; the text doesn't tell it.
  TOMLError within(std::uint32_t line) const;
  /// What stands there in place of the type asked for; no change if that is empty.
  TOMLError instead(std::string_view found) const;

  Reason reason;
  /// The first line is 1. For something missing, the line of the table or array that lacks it. 0 only for an
  /// error that comes from no document, such as that of `LocalDate(1979, 13, 1)`.
  std::uint32_t lineNumber;
  std::vector<TOMLKey> codingPath;

 private:
  void tell();

  std::string what_;
};

}  // namespace toml
