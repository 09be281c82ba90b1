#include "QuarnCLI/Invocation.h"

#include <algorithm>
#include <stdexcept>

#include "QuarnCLI/CLIError.h"

namespace quarn {
namespace {

[[noreturn]] void askedWrongly(const Command& row, std::string_view what) {
  throw std::logic_error("The row of `" + std::string(row.words) + "` does not list " + std::string(what));
}

void requireInRow(const Command& row, const Flag& flag, bool hasValue) {
  const Flag* listed = row.flag(flag.name);
  if (!listed || (listed->kind != ValueKind::none) != hasValue) askedWrongly(row, flag.name);
}

auto firstOf(const std::vector<std::string>& values, const Flag& flag) {
  return std::find(values.begin(), values.end(), flag.name);
}

}  // namespace

bool CLIArgs::contains(const Flag& flag) const {
  requireInRow(row, flag, false);
  return firstOf(values, flag) != values.end();
}

std::optional<std::string> CLIArgs::value(const Flag& flag) const {
  requireInRow(row, flag, true);
  const auto found = firstOf(values, flag);
  if (found == values.end() || found + 1 == values.end()) return std::nullopt;
  return *(found + 1);
}

std::optional<std::string> CLIArgs::path(const Flag& flag) const {
  auto given = value(flag);
  return given && given->empty() ? std::nullopt : given;
}

std::string CLIArgs::requiredPath(const Flag& flag) const {
  auto given = path(flag);
  if (!given) throw CLIError("Missing " + std::string(flag.name) + ".");
  return *std::move(given);
}

std::optional<std::string> CLIArgs::positional() const {
  if (!row.operand) askedWrongly(row, "an operand");
  const auto found = std::find_if(values.begin(), values.end(),
                                  [](const std::string& value) { return !value.starts_with("--"); });
  if (found == values.end()) return std::nullopt;
  return *found;
}

std::optional<std::string> CLIArgs::first() const {
  if (!row.operand) askedWrongly(row, "an operand");
  if (values.empty()) return std::nullopt;
  return values.front();
}

}  // namespace quarn
