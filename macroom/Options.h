#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "Drives.h"

namespace quarn::room {

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Something of the host, as it was named and with all links resolved; both absolute.
struct HostPath {
  std::string named;
  std::string real;
  bool operator==(const HostPath&) const = default;
};

/// What the command line asks for.
struct Options {
  std::vector<DriveRequest> drives;
  std::vector<HostPath> binds;
  std::vector<std::string> quarns;  // absolute, executable on the host, all links resolved
  std::string cwd = "/Users/me";
  bool keepRights = false;
  bool forceProot = false;  // from the environment: QUARN_ROOM_FORCE=proot
  bool help = false;
  std::vector<std::string> command;

  static const char* const usage;

  /// Throws UsageError.
  static Options parse(const std::vector<std::string>& arguments);
};

}  // namespace quarn::room
