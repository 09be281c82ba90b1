#include "QuarnCLI/dispatch/CommandTable.h"

#include <algorithm>

#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Groups.h"

namespace quarn::CommandTable {
namespace {

constexpr const Group* allGroups[] = {
    &installGroup, &installPluginsGroup, &uninstallGroup, &backupGroup,   &moveGroup,
    &healthGroup,  &dedupeGroup,         &snapshotGroup,  &scaffoldGroup,
};

const Group* groupNamed(std::string_view words) {
  const auto found = std::find_if(std::begin(allGroups), std::end(allGroups),
                                  [words](const Group* group) { return group->words == words; });
  return found == std::end(allGroups) ? nullptr : *found;
}

const Command* commandNamed(const Group& group, std::string_view words) {
  const auto found = std::find_if(group.commands.begin(), group.commands.end(),
                                  [words](const Command* command) { return command->words == words; });
  return found == group.commands.end() ? nullptr : *found;
}

/// `words` begin with the action.
[[noreturn]] void refuseUnknown(const Group& group, const std::vector<std::string>& words) {
  if (group.requiredPath) CLIArgs{words, *group.commands.front()}.requiredPath(*group.requiredPath);
  throw CLIError(std::string(group.unknownAction) + words.front());
}

/// `position` is that of the action among the words.
Match findInGroup(const Group& group, const std::vector<std::string>& words, std::size_t position) {
  if (words.size() <= position) throw CLIError(std::string(group.missingAction));
  const std::string& action = words[position];
  const std::string both = std::string(group.words) + " " + action;
  if (const Group* inner = groupNamed(both)) return findInGroup(*inner, words, position + 1);
  const Command* command = commandNamed(group, both);
  const auto at = words.begin() + static_cast<std::ptrdiff_t>(position);
  if (!command) refuseUnknown(group, {at, words.end()});
  return {*command, {{at + 1, words.end()}, *command}};
}

}  // namespace

std::span<const Group* const> groups() {
  return allGroups;
}

Match find(const std::vector<std::string>& words) {
  const Group* group = groupNamed(words.front());
  if (!group || group->words.find(' ') != std::string_view::npos) {
    throw CLIError("Unknown command: " + words.front());
  }
  return findInGroup(*group, words, 1);
}

std::string usage() {
  std::string text;
  for (const Group* group : allGroups) {
    for (const Command* command : group->commands) {
      if (command->usageLine.empty()) continue;
      if (!text.empty()) text += '\n';
      text += command->usageLine;
    }
  }
  return text;
}

}  // namespace quarn::CommandTable
