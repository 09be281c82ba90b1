#pragma once

#include <array>

#include "QuarnCLI/Command.h"

/// The flag by which the form of a report is chosen, for all the groups that have reports.
namespace quarn::ReportFlags {

inline constexpr std::array<std::string_view, 3> forms = {"human", "tsv", "toml"};
inline constexpr Flag format{
    .name = "--format",
    .kind = ValueKind::choice,
    .choices = forms,
    .meaning = "the form of the report",
};

}  // namespace quarn::ReportFlags
