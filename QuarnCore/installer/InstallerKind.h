#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quarn {

/// What can be installed from.
enum class InstallerKind {
  app,
  dmg,
  zip,
  pkg,
  mpkg,
  script,
  unknown,
};

namespace InstallerKinds {

inline constexpr std::array all = {InstallerKind::app,    InstallerKind::dmg,  InstallerKind::zip,
                                   InstallerKind::pkg,    InstallerKind::mpkg, InstallerKind::script,
                                   InstallerKind::unknown};

/// The word for a kind in files and reports.
std::string_view rawValue(InstallerKind kind);
/// The kind that a word stands for, to the letter.
std::optional<InstallerKind> fromRawValue(std::string_view text);

}  // namespace InstallerKinds
}  // namespace quarn
