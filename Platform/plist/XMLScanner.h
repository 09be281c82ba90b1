#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quarn {

/// Goes through a text of XML from its front, tag by tag. What answers false or nothing has met an error
/// or something else than was asked for; in the latter case, where it says so, nothing has been passed.
class XMLScanner {
 public:
  struct Tag {
    std::string_view name;
    bool isEmpty;  ///< closed by itself: <array/>
  };

  /// What may stand between tags.
  static constexpr bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

  explicit XMLScanner(std::string_view text) : rest_(text) {}

  /// To the first tag: past blanks, comments, instructions and the type of the document.
  bool skipProlog();
  /// To the next tag: past blanks, comments and instructions.
  bool skipToTag();
  /// The name of a tag that closes an element is empty. Attributes are passed over.
  std::optional<Tag> openingTag();
  /// If it isn't next, nothing is passed.
  bool takeClosingTag(std::string_view name);
  /// What stands before the next tag, as it is.
  std::string_view content();
  /// As `content`, with entities and CDATA sections replaced by what they stand for. UTF-8 without a NUL.
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
