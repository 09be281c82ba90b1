#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quarn {

/// Reads an XML text from its front, tag by tag. A function that returns false or nothing has met an error or
/// something else than it looks for. Where a comment says so, it has then moved past nothing.
class XMLScanner {
 public:
  struct Tag {
    std::string_view name;
    bool isEmpty;  ///< closed by itself, such as <array/>
  };

  /// Returns whether a character may stand between tags.
  static constexpr bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

  explicit XMLScanner(std::string_view text) : rest_(text) {}

  /// Moves to the first tag: past white space, comments, processing instructions and the document type.
  bool skipProlog();
  /// Moves to the next tag: past white space, comments and processing instructions.
  bool skipToTag();
  /// Takes an opening tag and ignores its attributes. At a closing tag the name is empty.
  std::optional<Tag> openingTag();
  /// Takes a closing tag of this name. If it isn't next, moves past nothing.
  bool takeClosingTag(std::string_view name);
  /// Takes everything up to the next tag unchanged.
  std::string_view content();
  /// Takes the same, but replaces entities and CDATA sections by what they stand for. The result is valid
  /// UTF-8 without a NUL.
  std::optional<std::string> text();

 private:
  bool take(std::string_view expected);
  std::optional<std::string_view> takeUntil(std::string_view end);
  std::optional<std::string_view> takeUntilUnquoted(std::string_view ends);
  void skipBlanks();
  bool skipBehind(std::string_view end) { return takeUntil(end).has_value(); }
  bool skipDeclarations();
  bool entity(std::string& content);

  std::string_view rest_;
};

}  // namespace quarn
