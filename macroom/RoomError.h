#pragma once

#include <stdexcept>

namespace quarn::room {

/// Why this kind of room cannot be had here; the next kind may still work.
struct RoomError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace quarn::room
