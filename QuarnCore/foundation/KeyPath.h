#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quarn {

/// The path of a value inside a JSON text, such as "movedItems[3].sizeBytes".
class KeyPath {
 public:
  /// Runs `step` with the path extended by one key.
  template <class Step>
  void within(std::string_view key, const Step& step) {
    const std::size_t length = text_.size();
    if (length > 0) text_ += '.';
    text_ += key;
    step();
    text_.resize(length);
  }
  template <class Step>
  void within(std::size_t index, const Step& step) {
    const std::size_t length = text_.size();
    text_ += '[' + std::to_string(index) + ']';
    step();
    text_.resize(length);
  }

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace quarn
