#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <stdexcept>
#include <type_traits>

#include "Platform/HostPlatform.h"
#include "QuarnCLI/dispatch/CommandTable.h"
#include "tests/support/Patterns.h"
#include "tests/support/Replacing.h"

namespace quarn {
namespace {

using Words = std::set<std::string>;

// What the compiler proves: a command that only looks is handed nothing by which it could change something.
static_assert(std::is_same_v<decltype(ReadOnlyInvocation::platform), ReadOnlyPlatform>);
static_assert(std::is_same_v<LookingHandler, ExitStatus (*)(const ReadOnlyInvocation&)>);
static_assert(!std::is_convertible_v<ReadOnlyInvocation, Invocation>);
static_assert(!std::is_constructible_v<Handler, ExitStatus (*)(ReadOnlyInvocation&)>,
              "and there is no third kind");

std::vector<const Command*> commands() {
  std::vector<const Command*> all;
  for (const Group* group : CommandTable::groups()) {
    all.insert(all.end(), group->commands.begin(), group->commands.end());
  }
  return all;
}

/// Carries out a command without arguments, whose code is handed a row of the test's own.
void carryOut(const Command& row) {
  const CLIArgs args{{}, row};
  if (const auto* looking = std::get_if<LookingHandler>(&row.handler)) {
    TemporaryFolders temporaryFolders(hostPlatform());
    (*looking)({hostPlatform(), temporaryFolders, args});
  } else {
    std::get<ChangingHandler>(row.handler)({hostPlatform(), "quarn", args});
  }
}

/// The mistake that the code of a command makes with that row; empty if it makes none.
std::string mistake(const Command& row) {
  try {
    thrown([&] { carryOut(row); });
  } catch (const std::logic_error& error) {
    return error.what();
  }
  return {};
}

Command without(const Command& command, std::string_view name, std::vector<Flag>& flags) {
  flags.assign(command.flags.begin(), command.flags.end());
  std::erase_if(flags, [name](const Flag& flag) { return flag.name == name; });
  Command row = command;
  row.flags = flags;
  return row;
}

TEST(CommandRows, theCodeOfEachCommandAsksForWhatItsRowListsAndForNothingElse) {
  for (const Command* command : commands()) {
    const std::string start = "The row of `" + std::string(command->words) + "` does not list ";
    EXPECT_EQ(mistake(*command), "");
    for (const Flag& flag : command->flags) {
      std::vector<Flag> flags;
      EXPECT_EQ(mistake(without(*command, flag.name, flags)), start + std::string(flag.name))
          << "the code does not ask for it, or only after it has begun its work";
    }
    if (!command->operand) continue;
    Command row = *command;
    row.operand.reset();
    EXPECT_EQ(mistake(row), start + "an operand");
  }
}

TEST(CommandRows, theseCommandsOnlyLook) {
  Words looking;
  for (const Command* command : commands()) {
    if (!command->changesTheDisk()) looking.emplace(command->words);
  }
  EXPECT_EQ(looking, (Words{"move drives",
                            "move apps",
                            "move plan",
                            "snapshot list",
                            "install options",
                            "install inspect",
                            "install plan",
                            "install sessions",
                            "install pending",
                            "install uninstall-plan",
                            "install plugins inspect",
                            "uninstall apps",
                            "uninstall inspect",
                            "uninstall plan",
                            "uninstall sessions",
                            "backup list",
                            "health check",
                            "health analyze",
                            "dedupe scan",
                            "dedupe plan"}));
}

TEST(CommandRows, eachBeginsWithTheWordsOfItsGroupAndIsThereOnce) {
  Words all;
  for (const Group* group : CommandTable::groups()) {
    for (const Command* command : group->commands) {
      EXPECT_TRUE(command->words.starts_with(std::string(group->words) + " ")) << command->words;
      EXPECT_TRUE(all.emplace(command->words).second) << command->words << " is there twice";
    }
  }
}

TEST(CommandRows, eachTellsWhatItDoesAndWhenItSucceeds) {
  for (const Command* command : commands()) {
    EXPECT_NE(command->purpose, "") << command->words;
    EXPECT_NE(command->outcomes.success, "") << command->words;
  }
}

TEST(CommandRows, aFlagTellsItsValueByItsKindAndIsThereOnce) {
  for (const Command* command : commands()) {
    Words names;
    for (const Flag& flag : command->flags) {
      SCOPED_TRACE(std::string(command->words) + " " + std::string(flag.name));
      const bool hasChoices = flag.kind == ValueKind::choice || flag.kind == ValueKind::list;
      const bool hasName = flag.kind == ValueKind::path || flag.kind == ValueKind::text;
      EXPECT_EQ(!flag.choices.empty(), hasChoices);
      EXPECT_EQ(!flag.valueName.empty(), hasName);
      EXPECT_NE(flag.meaning, "");
      EXPECT_TRUE(names.emplace(flag.name).second);
    }
  }
}

/// The flags of a usage line, each with the value that it shows.
std::vector<std::pair<std::string, std::string>> shownFlags(std::string_view usageLine) {
  const std::string line(usageLine.substr(0, usageLine.find("   #")));
  const std::string flag("(--[a-z-]+|-o\\b)(?: (<[^>]*>|[a-z0-9,]+(?:\\|[a-z]+)*))?");
  std::vector<std::pair<std::string, std::string>> shown;
  for (const auto& part : patterns::groups(line, flag)) shown.emplace_back(part[1], part[2]);
  return shown;
}

TEST(CommandRows, whatAUsageLineShowsItsRowLists) {
  std::size_t count = 0;
  for (const Command* command : commands()) {
    if (command->usageLine.empty()) continue;
    SCOPED_TRACE(command->usageLine);
    const std::string start = "quarn " + std::string(command->words);
    EXPECT_TRUE(command->usageLine.starts_with(start));
    if (command->operand) {
      const auto behind = command->usageLine.substr(start.size());
      EXPECT_TRUE(behind.starts_with(" " + std::string(command->operand->name)) ||
                  behind.starts_with("  " + std::string(command->operand->name)));
    }
    for (const auto& [name, value] : shownFlags(command->usageLine)) {
      ++count;
      const Flag* flag = command->flag(name);
      ASSERT_TRUE(flag) << name;
      EXPECT_EQ(flag->kind != ValueKind::none, !value.empty()) << name;
    }
  }
  const std::string usage = CommandTable::usage();
  std::size_t dashes = 0;
  for (auto at = usage.find("--"); at != std::string::npos; at = usage.find("--", at + 2)) ++dashes;
  EXPECT_EQ(count, dashes + 1) << "every flag that the usage text shows, and one with a single dash";
}

}  // namespace
}  // namespace quarn
