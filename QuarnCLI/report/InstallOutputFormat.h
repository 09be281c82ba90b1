#pragma once

#include "QuarnCore/foundation/RawValues.h"

namespace quarn {

/// The forms of a report.
enum class InstallOutputFormat { human, tsv, toml };

template <>
inline constexpr auto rawValueRows<InstallOutputFormat> = std::to_array<RawValueRow<InstallOutputFormat>>({
    {InstallOutputFormat::human, "human"},
    {InstallOutputFormat::tsv, "tsv"},
    {InstallOutputFormat::toml, "toml"},
});

}  // namespace quarn
