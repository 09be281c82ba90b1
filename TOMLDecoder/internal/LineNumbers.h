#pragma once

#include <cstdint>
#include <string_view>

#include "TOMLDecoder/internal/FlatList.h"

namespace toml {

/// Tells the line of a place in a document. A line is asked for only where something is wrong, so no entry
/// keeps one. Only how many lines end before each block of the text is noted.
class LineNumbers {
 public:
  LineNumbers() = default;
  explicit LineNumbers(std::string_view source);

  /// The first line is 1. `source` is the text that the constructor got.
  std::uint32_t at(std::string_view source, std::size_t offset) const;

 private:
  FlatList<std::uint32_t> linesBefore_;
};

}  // namespace toml
