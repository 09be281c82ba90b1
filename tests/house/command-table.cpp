#include <cstdio>
#include <string>
#include <vector>

#include "QuarnCLI/dispatch/CommandTable.h"
#include "QuarnCLI/uninstall/UninstallFlags.h"
#include "QuarnCore/health/HealthIssue.h"
#include "QuarnCore/uninstall/UninstallSelection.h"

// Prints a table of a document from the program's own: command-table commands|flags|statuses|kinds|categories

namespace {

using quarn::Command;
using quarn::Flag;
using quarn::UninstallCategory;
using quarn::UninstallSelection;
using quarn::UninstallSwitch;
using quarn::ValueKind;

std::vector<const Command*> commands() {
  std::vector<const Command*> all;
  for (const quarn::Group* group : quarn::CommandTable::groups())
    all.insert(all.end(), group->commands.begin(), group->commands.end());
  return all;
}

/// As code, also within a cell.
std::string code(std::string_view text) {
  std::string quoted = "`";
  for (const char byte : text) quoted += byte == '|' ? std::string("\\|") : std::string(1, byte);
  return quoted + "`";
}

/// An empty cell is one space wide.
std::string row(const std::vector<std::string>& cells) {
  std::string line = "|";
  for (const std::string& cell : cells) line += (cell.empty() ? "" : " " + cell) + " |";
  return line + "\n";
}

std::string head(const std::vector<std::string>& titles) {
  std::string line = "|";
  for (std::size_t i = 0; i < titles.size(); ++i) line += "---|";
  return row(titles) + line + "\n";
}

std::string valueOf(const Flag& flag) {
  std::string text(flag.valueName);
  for (const std::string_view choice : flag.choices) text += (text.empty() ? "" : ", ") + code(choice);
  if (flag.kind == ValueKind::list) text = "some of " + text;
  return text + (flag.isRequired ? "; required" : "");
}

/// With all that it can't do without.
std::string call(const Command& command) {
  std::string words = "quarn " + std::string(command.words);
  if (command.operand) words += " " + std::string(command.operand->name);
  for (const Flag& flag : command.flags) {
    if (flag.isRequired) words += " " + std::string(flag.name) + " <" + std::string(flag.valueName) + ">";
  }
  return code(words);
}

std::string commandTable() {
  std::string table = head({"Command", "What it does", "Changes the disk"});
  for (const Command* command : commands()) {
    table += row({call(*command), std::string(command->purpose), command->changesTheDisk() ? "yes" : "no"});
  }
  return table;
}

/// A flag that several commands have in common stands there once.
struct KnownFlag {
  const Flag* flag;
  std::string commands;
};

std::vector<KnownFlag> knownFlags() {
  std::vector<KnownFlag> known;
  for (const Command* command : commands()) {
    for (const Flag& flag : command->flags) {
      auto same = known.begin();
      while (same != known.end() && (same->flag->name != flag.name || same->flag->meaning != flag.meaning))
        ++same;
      if (same == known.end()) same = known.insert(same, {&flag, ""});
      same->commands += (same->commands.empty() ? "" : ", ") + code(command->words);
    }
  }
  return known;
}

std::string flagTable() {
  std::string table = head({"Flag", "Value", "What it does", "Known to"});
  for (const auto& [flag, commands] : knownFlags()) {
    table += row({code(flag->name), valueOf(*flag), std::string(flag->meaning), commands});
  }
  return table;
}

std::string tellingLines(const Command& command) {
  std::string text;
  for (const auto& [line, meaning] : command.tellingLines) {
    text += (text.empty() ? "" : "; ") + code(line);
    if (!meaning.empty()) text += " (" + std::string(meaning) + ")";
  }
  return text;
}

std::string statusTable() {
  std::string table =
      head({"Command", "0", "1", "2", "With status 0, this line tells that not all was done"});
  for (const Command* command : commands()) {
    const auto& [success, failure, attention] = command->outcomes;
    table += row({code(command->words), std::string(success), std::string(failure), std::string(attention),
                  tellingLines(*command)});
  }
  return table;
}

std::string kindTable() {
  std::string table = head({"Kind", "What it means", "What its repair does"});
  for (const auto& [kind, name, meaning, repair] : quarn::rawValueRows<quarn::HealthIssue::Kind>) {
    table += row({code(name), std::string(meaning), repair.empty() ? "nothing" : std::string(repair)});
  }
  return table;
}

bool governsCategory(UninstallSwitch governing) {
  for (const UninstallCategory category : quarn::allCases<UninstallCategory>()) {
    if (quarn::switchOf(category) == governing) return true;
  }
  return false;
}

/// The switch of what a link or a launcher leads to, which is an executable, too, is the one without a
/// category.
const Flag* flagOf(UninstallCategory category) {
  for (const auto& [flag, governed] : quarn::UninstallFlags::includes) {
    const bool isOfTarget = category == UninstallCategory::executable && !governsCategory(governed);
    if (governed == quarn::switchOf(category) || isOfTarget) return flag;
  }
  return nullptr;
}

std::string withoutFlags(UninstallCategory category) {
  if (category == UninstallCategory::executable) return "the application goes in any case";
  // Always on, and no record is ever selected by the scan.
  if (category == UninstallCategory::installerSession) return "stays";
  const bool isTaken = UninstallSelection::everything().allows(category) && rowOf(category).defaultSelected;
  return isTaken ? "goes" : "stays";
}

std::string categoryTable() {
  std::string table = head({"Category", "In reports", "Flag", "What the flag does", "Without any flag"});
  for (const UninstallCategory category : quarn::allCases<UninstallCategory>()) {
    const Flag* flag = flagOf(category);
    table += row({std::string(rowOf(category).label), code(rawValue(category)), flag ? code(flag->name) : "",
                  flag ? std::string(flag->meaning) : "", withoutFlags(category)});
  }
  return table;
}

}  // namespace

int main(int count, char** words) {
  const std::string wanted = count == 2 ? words[1] : "";
  std::string table;
  if (wanted == "commands") table = commandTable();
  if (wanted == "flags") table = flagTable();
  if (wanted == "statuses") table = statusTable();
  if (wanted == "kinds") table = kindTable();
  if (wanted == "categories") table = categoryTable();
  if (table.empty()) {
    std::fputs("usage: command-table commands|flags|statuses|kinds|categories\n", stderr);
    return 2;
  }
  std::fputs(table.c_str(), stdout);
}
