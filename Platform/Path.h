#pragma once

#include <string>
#include <string_view>

namespace quarn {

/// The place of an item as text. The bytes are those of the disk; nothing is normalised.
/// A trailing slash is dropped on construction, so "/a/" and "/a" are the same path.
/// Pure: no operation here asks the disk.
class Path {
 public:
  Path() = default;
  explicit Path(std::string_view text);

  const std::string& text() const { return text_; }
  /// No item has such a path, and a system call would take it for the text before the NUL.
  bool holdsNul() const { return text_.find('\0') != std::string::npos; }
  bool isAbsolute() const { return !text_.empty() && text_.front() == '/'; }

  /// "/" for the root, "b" for "/a///b".
  std::string lastComponent() const;
  /// The root is its own parent.
  Path parent() const;
  /// Without the dot and without case folding; empty for ".hidden", "file." and for an ending that
  /// holds a blank, as in "Foo 1.2 Beta".
  std::string extension() const;
  /// The last component less its extension.
  std::string nameWithoutExtension() const;
  /// Adds components as they are: "../x" is not simplified, "" adds nothing.
  Path appending(std::string_view components) const;
  /// Doubled slashes, "." and ".." removed as text. Links are not looked at.
  Path simplified() const;

  /// Byte for byte; whoever compares names as people do uses `Text::equal`.
  bool operator==(const Path& other) const = default;

 private:
  void add(std::string_view components);

  std::string text_;
};

}  // namespace quarn
