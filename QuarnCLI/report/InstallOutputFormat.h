#pragma once

#include <optional>
#include <string_view>

namespace quarn {

/// The forms of a report.
enum class InstallOutputFormat { human, tsv, toml };

namespace InstallOutputFormats {

std::string_view rawValue(InstallOutputFormat format);
/// Nothing for an unknown text.
std::optional<InstallOutputFormat> fromRawValue(std::string_view text);

}  // namespace InstallOutputFormats
}  // namespace quarn
