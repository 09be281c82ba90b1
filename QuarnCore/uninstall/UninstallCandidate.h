#pragma once

#include <cstdint>
#include <string>

#include "QuarnCore/uninstall/UninstallCategory.h"

namespace quarn {

/// How sure it is that an item belongs to the application.
enum class UninstallConfidence { high, medium, low };

template <>
inline constexpr auto rawValueRows<UninstallConfidence> = std::to_array<RawValueRow<UninstallConfidence>>({
    {UninstallConfidence::high, "high"},
    {UninstallConfidence::medium, "medium"},
    {UninstallConfidence::low, "low"},
});

/// An item that belongs to an application. Its size is in bytes, and 0 for receipts and records.
struct UninstallCandidate {
  std::string path;  ///< for a receipt, the identifier of the package
  UninstallCategory category = UninstallCategory::executable;
  std::int64_t sizeBytes = 0;
  UninstallConfidence confidence = UninstallConfidence::high;
  std::string reason = {};       ///< in words
  bool defaultSelected = false;  ///< taken unless its category is left out
  bool isPrivileged = false;     ///< only an administrator can remove it
  bool isSymlink = false;        ///< it is the link in the place of the application

  bool operator==(const UninstallCandidate&) const = default;
};

}  // namespace quarn
