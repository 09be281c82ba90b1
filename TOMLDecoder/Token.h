#pragma once

#include <cstdint>

namespace toml {

/// A range of bytes of a document.
struct TextRange {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
};

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

}  // namespace toml
