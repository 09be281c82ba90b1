#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <variant>

namespace quarn {

/// What a shell learns of a run.
enum class ExitStatus {
  success = 0,
  failure = 1,
  attention = 2,  ///< a result that a script must see, such as an empty queue
};

/// What stands behind a flag.
enum class ValueKind {
  none,
  path,
  text,
  choice,  ///< one of the choices
  list,    ///< some of the choices, separated by commas
};

struct Flag {
  std::string_view name;  ///< with its dashes
  ValueKind kind = ValueKind::none;
  std::string_view valueName{};                 ///< what a person reads for a path or a text
  std::span<const std::string_view> choices{};  ///< for a choice or a list
  bool isRequired = false;
  std::string_view meaning;  ///< without a capital and a full stop
};

/// The word that tells what a command is about. It isn't known from a flag's value by its looks.
struct Operand {
  std::string_view name;  ///< as the usage text shows it
  bool isRequired = true;
};

/// When a command ends with which status; empty for one that it doesn't end with. Any command also fails when
/// its standard output can't be written.
struct Outcomes {
  std::string_view success;
  std::string_view failure;
  std::string_view attention{};
};

/// A line on standard output by which a script learns what status 0 doesn't tell.
struct TellingLine {
  std::string_view text;  ///< a last "N" is a number, and "…" is any text
  std::string_view meaning;
};

struct Invocation;
struct ReadOnlyInvocation;
/// A command that only looks, proved by the compiler: what it is handed can change nothing.
using LookingHandler = ExitStatus (*)(const ReadOnlyInvocation&);
using ChangingHandler = ExitStatus (*)(const Invocation&);
using Handler = std::variant<LookingHandler, ChangingHandler>;

/// All that is known of a command. Dispatch, the usage text and the tables of the README are made from it.
struct Command {
  std::string_view words;    ///< "move one"
  std::string_view purpose;  ///< what it does, without a capital and a full stop
  std::optional<Operand> operand{};
  std::span<const Flag> flags{};  ///< every one that it knows, whether the usage line tells of it or not
  Outcomes outcomes{};
  std::span<const TellingLine> tellingLines{};
  Handler handler;
  std::string_view usageLine{};  ///< empty: left out of the usage text

  bool changesTheDisk() const { return std::holds_alternative<ChangingHandler>(handler); }
  /// The flag of that name; nothing if it knows none.
  const Flag* flag(std::string_view name) const;
};

/// The commands that begin with the same words.
struct Group {
  std::string_view words;
  std::string_view missingAction;  ///< the whole message
  std::string_view unknownAction;  ///< the word follows
  std::span<const Command* const> commands;
  /// A path that all these commands need, and that is asked for before the action is looked at.
  const Flag* requiredPath = nullptr;
};

}  // namespace quarn
