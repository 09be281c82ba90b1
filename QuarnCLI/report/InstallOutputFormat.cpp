#include "QuarnCLI/report/InstallOutputFormat.h"

namespace quarn::InstallOutputFormats {

std::string_view rawValue(InstallOutputFormat format) {
  switch (format) {
    case InstallOutputFormat::human:
      return "human";
    case InstallOutputFormat::tsv:
      return "tsv";
    case InstallOutputFormat::toml:
      return "toml";
  }
  return "human";
}

std::optional<InstallOutputFormat> fromRawValue(std::string_view text) {
  for (const auto format :
       {InstallOutputFormat::human, InstallOutputFormat::tsv, InstallOutputFormat::toml}) {
    if (rawValue(format) == text) return format;
  }
  return std::nullopt;
}

}  // namespace quarn::InstallOutputFormats
