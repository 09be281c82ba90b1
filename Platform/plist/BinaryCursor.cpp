#include "Platform/plist/BinaryCursor.h"

namespace quarn {

std::uint64_t numberFrom(std::string_view bytes) {
  std::uint64_t value = 0;
  for (const char byte : bytes) value = value << 8 | static_cast<unsigned char>(byte);
  return value;
}

std::optional<std::string_view> BinaryCursor::bytes(std::uint64_t count) {
  if (count > rest_.size()) return std::nullopt;
  const auto taken = rest_.substr(0, count);
  rest_.remove_prefix(count);
  return taken;
}

std::optional<std::string_view> BinaryCursor::counted(unsigned marker, std::size_t width) {
  const auto elements = count(marker & 0xF);
  // Divided instead of multiplied, because a hostile count could make the product overflow.
  if (!elements || *elements > rest_.size() / width) return std::nullopt;
  return bytes(*elements * width);
}

/// A count of 15 in the marker means that the count is in an integer that follows.
std::optional<std::uint64_t> BinaryCursor::count(unsigned inMarker) {
  if (inMarker != 0xF) return inMarker;
  const auto marker = bytes(1);
  if (!marker) return std::nullopt;
  const auto kindAndWidth = numberFrom(*marker);
  // The marker of an integer: its lower half is the binary logarithm of its width.
  if (kindAndWidth < 0x10 || kindAndWidth > 0x13) return std::nullopt;
  const auto number = bytes(std::uint64_t{1} << (kindAndWidth & 0xF));
  if (!number) return std::nullopt;
  return numberFrom(*number);
}

}  // namespace quarn
