#pragma once

#include <set>
#include <string>
#include <vector>

#include "Platform/Platform.h"

namespace quarn {

/// The identifiers of the installed packages at one moment. It is never stored.
struct ReceiptSnapshot {
  std::set<std::string> packageIDs;
  bool operator==(const ReceiptSnapshot&) const = default;
};

namespace ReceiptScanner {

/// Asks `pkgutil`, without a limit of time. What it prints counts whatever its exit status; if it can't be
/// started, or its output isn't UTF-8, the snapshot is empty. Never throws.
ReceiptSnapshot capture(const ReadOnlyPlatform& platform);

/// Returns the identifiers of `after` that are not in `before`, sorted byte by byte.
std::vector<std::string> added(const ReceiptSnapshot& before, const ReceiptSnapshot& after);

}  // namespace ReceiptScanner
}  // namespace quarn
