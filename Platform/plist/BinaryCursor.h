#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quarn {

/// The number that up to 8 bytes are, the highest first.
std::uint64_t numberFrom(std::string_view bytes);

/// Takes the content of a value of a binary property list from the front; nothing if bytes are missing.
class BinaryCursor {
 public:
  explicit BinaryCursor(std::string_view bytes) : rest_(bytes) {}

  std::optional<std::string_view> bytes(std::uint64_t count);
  /// As many bytes as elements of a width take, whose count is or begins in the lower half of the
  /// marker.
  std::optional<std::string_view> counted(unsigned marker, std::size_t width);

 private:
  std::optional<std::uint64_t> count(unsigned inMarker);

  std::string_view rest_;
};

}  // namespace quarn
