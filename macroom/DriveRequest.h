#pragma once

#include <optional>
#include <string>

namespace quarn::room {

/// A drive to put at /Volumes/NAME.
struct DriveRequest {
  std::string name;
  std::string size;  // digits, then nothing, k, m or g
  bool readOnly = false;
  bool operator==(const DriveRequest&) const = default;

  /// From "NAME=SIZE" or "NAME=SIZE,ro"; the name may hold anything but a slash. Absent for anything else.
  static std::optional<DriveRequest> parse(const std::string& text);
};

}  // namespace quarn::room
