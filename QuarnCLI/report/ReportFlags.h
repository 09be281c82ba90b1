#pragma once

#include <array>

#include "QuarnCLI/Command.h"
#include "QuarnCLI/FlagNames.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/report/InstallOutputFormat.h"

/// The flag by which the form of a report is chosen, for all the groups that have reports.
namespace quarn::ReportFlags {

inline constexpr auto forms = [] {
  constexpr auto cases = allCases<InstallOutputFormat>();
  std::array<std::string_view, cases.size()> texts;
  for (std::size_t i = 0; i < cases.size(); ++i) texts[i] = rawValue(cases[i]);
  return texts;
}();
inline constexpr Flag format{
    .name = FlagNames::format,
    .kind = ValueKind::choice,
    .choices = forms,
    .meaning = "the form of the report",
};

/// The chosen form, or `otherwise` if none or an unknown one was given.
inline InstallOutputFormat chosen(const CLIArgs& args, InstallOutputFormat otherwise) {
  const auto given = args.value(format);
  return given ? fromRawValue<InstallOutputFormat>(*given).value_or(otherwise) : otherwise;
}

}  // namespace quarn::ReportFlags
