#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quarn {

/// Returns the big-endian number in up to 8 bytes.
std::uint64_t numberFrom(std::string_view bytes);

/// Takes the content of a value of a binary property list from the front. Returns nothing if bytes are
/// missing.
class BinaryCursor {
 public:
  explicit BinaryCursor(std::string_view bytes) : rest_(bytes) {}

  std::optional<std::string_view> bytes(std::uint64_t count);
  /// Takes the elements of a value, each `width` bytes wide. Their count is in the lower half of the marker
  /// or in the integer that follows it.
  std::optional<std::string_view> counted(unsigned marker, std::size_t width);

 private:
  std::optional<std::uint64_t> count(unsigned inMarker);

  std::string_view rest_;
};

}  // namespace quarn
