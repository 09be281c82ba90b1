#include "QuarnCLI/plugins/PluginCLIShared.h"

#include <algorithm>

#include "Platform/PathText.h"
#include "Platform/Text.h"
#include "QuarnCLI/CLIError.h"

namespace quarn::PluginCLIShared {
namespace {

std::set<PluginFormat> allFormats() {
  const auto cases = allCases<PluginFormat>();
  return {cases.begin(), cases.end()};
}

/// A word is the text of a format or the extension of its bundles.
PluginFormat formatNamed(const std::string& word) {
  if (const auto format = fromRawValue<PluginFormat>(word)) return *format;
  if (const auto format = PluginFormats::fromExtension(word)) return *format;
  throw CLIError("Unknown plugin format: " + word);
}

}  // namespace

std::set<PluginFormat> parseFormats(const std::optional<std::string>& value) {
  if (!value || value->empty()) return allFormats();
  std::set<PluginFormat> chosen;
  for (std::size_t start = 0; start < value->size();) {
    const std::size_t end = std::min(value->find(',', start), value->size());
    const std::string piece = value->substr(start, end - start);
    start = end + 1;
    if (piece.empty()) continue;
    const std::string word = Text::lowercased(Text::trimmingWhitespace(piece));
    if (word == "all") return allFormats();
    chosen.insert(formatNamed(word));
  }
  return chosen;
}

Path pathOf(const Places& places, const std::string& given) {
  return PathText::fileURL(places, PathText::expandingTilde(places, given));
}

std::optional<std::string> sourceOf(const CLIArgs& args) {
  const auto operand = args.positional();
  if (!operand || operand->empty()) return std::nullopt;
  const auto found = std::find(args.values.begin(), args.values.end(), *operand);
  if (found == args.values.begin()) return operand;
  const Flag* before = args.row.flag(*(found - 1));
  return before && before->kind != ValueKind::none ? std::nullopt : operand;
}

}  // namespace quarn::PluginCLIShared
