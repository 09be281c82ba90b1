#pragma once

#include <string_view>

/// The flags that several groups know. Each group says for itself what one means there; the word is the same.
namespace quarn::FlagNames {

inline constexpr std::string_view dryRun = "--dry-run";
inline constexpr std::string_view format = "--format";
inline constexpr std::string_view noSnapshot = "--no-snapshot";
inline constexpr std::string_view progress = "--progress";
inline constexpr std::string_view targetDrive = "--target-drive";
inline constexpr std::string_view verbose = "--verbose";
inline constexpr std::string_view yes = "--yes";

}  // namespace quarn::FlagNames
