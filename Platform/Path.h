#pragma once

#include <string>
#include <string_view>

namespace quarn {

/// A path as text. Its bytes are those of the disk; nothing is normalized. The constructor drops trailing
/// slashes, so "/a/" and "/a" are the same path. No operation here touches the disk.
class Path {
 public:
  Path() = default;
  explicit Path(std::string_view text);

  const std::string& text() const { return text_; }
  /// Returns whether the path contains a NUL. No item has such a path, and a system call would read only the
  /// text before the NUL.
  bool holdsNul() const { return text_.find('\0') != std::string::npos; }
  bool isAbsolute() const { return !text_.empty() && text_.front() == '/'; }

  /// Returns "/" for the root, and "b" for "/a///b".
  std::string lastComponent() const;
  /// Returns the parent. The root is its own parent.
  Path parent() const;
  /// Returns the extension without its dot and with its letter case unchanged. It is empty for ".hidden", for
  /// "file.", and for an ending that contains a space, as in "Foo 1.2 Beta".
  std::string extension() const;
  /// Returns the last component without its extension.
  std::string nameWithoutExtension() const;
  /// Appends components as they are: "../x" is not simplified, and "" appends nothing.
  Path appending(std::string_view components) const;
  /// Removes doubled slashes, "." and ".." from the text. Ignores links.
  Path simplified() const;

  /// Compares byte by byte. To compare names as people do, use `Text::equal`.
  bool operator==(const Path& other) const = default;

 private:
  void add(std::string_view components);

  std::string text_;
};

}  // namespace quarn
