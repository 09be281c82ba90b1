#include "Platform/posix/BundleOfExecutable.h"

namespace quarn {
namespace {

constexpr std::string_view extension = ".app";
constexpr std::string_view insideBundle = ".app/Contents/MacOS/";

}  // namespace

std::optional<Path> bundleOfExecutable(std::string_view executablePath) {
  const std::size_t found = executablePath.rfind(insideBundle);
  if (!executablePath.starts_with('/') || found == std::string_view::npos) return std::nullopt;
  const bool hasNames =
      executablePath[found - 1] != '/' && found + insideBundle.size() < executablePath.size();
  if (!hasNames) return std::nullopt;
  return Path(executablePath.substr(0, found + extension.size()));
}

}  // namespace quarn
