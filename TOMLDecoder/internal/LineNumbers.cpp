#include "TOMLDecoder/internal/LineNumbers.h"

#include <algorithm>

namespace toml {

namespace {

constexpr std::size_t blockSize = 4096;

/// Counted in pieces whose count fits a byte, so that the compiler counts many bytes at once.
std::uint32_t newlinesIn(std::string_view text) {
  std::uint32_t count = 0;
  while (!text.empty()) {
    const std::string_view piece = text.substr(0, 128);
    std::uint8_t found = 0;
    for (const char byte : piece) found = static_cast<std::uint8_t>(found + (byte == '\n'));
    count += found;
    text.remove_prefix(piece.size());
  }
  return count;
}

}  // namespace

LineNumbers::LineNumbers(std::string_view source) {
  std::uint32_t lines = 0;
  for (std::size_t offset = blockSize; offset <= source.size(); offset += blockSize) {
    lines += newlinesIn(source.substr(offset - blockSize, blockSize));
    linesBefore_.add(lines);
  }
  linesBefore_.trim();
}

std::uint32_t LineNumbers::at(std::string_view source, std::size_t offset) const {
  const auto block = static_cast<std::uint32_t>(std::min(offset, source.size()) / blockSize);
  const std::uint32_t before = block == 0 ? 0 : linesBefore_[block - 1];
  const std::size_t start = block * blockSize;
  return before + newlinesIn(source.substr(start, offset - start)) + 1;
}

}  // namespace toml
