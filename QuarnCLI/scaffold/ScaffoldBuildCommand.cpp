#include <algorithm>
#include <array>

#include "Platform/PathText.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/Console.h"
#include "QuarnCLI/CurrentFolder.h"
#include "QuarnCLI/Invocation.h"
#include "QuarnCLI/scaffold/BuildCommandScript.h"
#include "QuarnCLI/scaffold/PresetDetection.h"
#include "QuarnCLI/scaffold/PresetRegistry.h"
#include "QuarnCLI/scaffold/ScaffoldCommands.h"

namespace quarn::ScaffoldCommands {
namespace {

constexpr Flag appName{
    .name = "--app-name",
    .kind = ValueKind::text,
    .valueName = "name",
    .meaning = "the application's name; that of the current folder without it",
};
constexpr Flag binSrc{
    .name = "--bin-src",
    .kind = ValueKind::path,
    .valueName = "path",
    .meaning = "where the project's build leaves the application, seen from the script's folder",
};
constexpr Flag defaultDrive{
    .name = "--default-drive",
    .kind = ValueKind::path,
    .valueName = "path",
    .meaning = "the drive that the script installs onto if it is given none",
};
constexpr Flag force{
    .name = "--force",
    .meaning = "replaces a script that is there",
};
constexpr Flag output{
    .name = "-o",
    .kind = ValueKind::path,
    .valueName = "path",
    .meaning = "where the script is written",
};
constexpr auto presetIDs = [] {
  std::array<std::string_view, PresetRegistry::all.size()> ids;
  for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = PresetRegistry::all[i].id;
  return ids;
}();
constexpr Flag preset{
    .name = "--preset",
    .kind = ValueKind::choice,
    .choices = presetIDs,
    .meaning = "how the project is built; found out without it",
};
constexpr Flag flags[] = {appName, binSrc, defaultDrive, force, output, preset};

// What a run does with what it was given.
struct Settled {
  BuildCommandScript::Values values;
  CompilePreset preset;
  Path output;
  bool replaces = false;
};

std::string settledName(const std::optional<std::string>& given, const Path& current) {
  if (!given && current == Path("/"))
    throw CLIError("The current folder has no name. Pass --app-name <Name>.");
  const std::string name = given.value_or(current.lastComponent());
  // The script would refuse it: with a slash it names another place than /Applications.
  if (name.empty() || std::find(name.begin(), name.end(), '/') != name.end())
    throw CLIError("An app name must not be empty or have a slash: " + name);
  return name;
}

/// The tools that the script gives the path to would take a hyphen at its beginning for options.
std::string settledSource(const std::string& source) {
  return source.starts_with('-') ? "./" + source : source;
}

// The script would refuse it at every start: the link in /Applications needs a path that means the same from
// everywhere.
std::string settledDrive(const std::string& drive) {
  if (!drive.empty() && !Path(drive).isAbsolute())
    throw CLIError("An external drive needs an absolute path: " + drive);
  return drive;
}

Settled settle(const ReadOnlyPlatform& platform, const CLIArgs& args) {
  const auto givenName = args.value(appName);
  const auto givenSource = args.value(binSrc);
  const auto givenDrive = args.value(defaultDrive).value_or("");
  const auto givenOutput = args.value(output);
  const auto givenPreset = args.value(preset);
  const bool replaces = args.contains(force);

  const Path current = CurrentFolder::required(platform);
  const std::string name = settledName(givenName, current);
  return {
      .values = {name, settledSource(givenSource.value_or("build/" + name + ".app")),
                 settledDrive(givenDrive)},
      .preset =
          givenPreset ? PresetRegistry::preset(*givenPreset) : PresetDetection::presetFor(platform, current),
      .output = PathText::fileURL(platform.places, givenOutput.value_or("build.command")),
      .replaces = replaces,
  };
}

/// A link counts, wherever it leads.
bool isThere(const FileSystem& files, const Path& item) {
  const auto found = files.attributes(item);
  if (!found && found.error().code != CocoaErrorCode::fileReadNoSuchFile) throw found.error();
  return static_cast<bool>(found);
}

void tell(const Settled& settled) {
  const std::string& path = settled.output.text();
  Console::print("Wrote " + path);
  Console::print("App name: " + settled.values.appName);
  Console::print("Source bundle (edit if wrong): " + settled.values.binSrc);
  Console::print("Build preset: " + std::string(settled.preset.id));
  if (!settled.values.defaultDrive.empty())
    Console::print("Default external drive: " + settled.values.defaultDrive);
  Console::print("");
  Console::print("Try:");
  Console::print(path + "                                # install to /Applications");
  Console::print(path + " --external-drive=/Volumes/X9   # install to external drive + symlink");
  Console::print(path + " --no-install                   # build only");
}

ExitStatus run(const Invocation& invocation) {
  const Settled settled = settle(invocation.platform, invocation.args);
  FileSystem& files = invocation.platform.files;
  if (!settled.replaces && isThere(files, settled.output))
    throw CLIError(settled.output.text() + " exists. Pass --force to overwrite.");
  files.writeAtomically(settled.output, BuildCommandScript::text(settled.values, settled.preset)).orThrow();
  files.setPermissions(settled.output, 0755).orThrow();
  tell(settled);
  return ExitStatus::success;
}

}  // namespace

constinit const Command buildCommand{
    .words = "scaffold build-command",
    .purpose = "writes a script that builds and installs a project",
    .flags = flags,
    .outcomes = {.success = "written",
                 .failure =
                     "a script is there already, a name or a drive is refused, or it can't be written"},
    .handler = run,
    .usageLine =
        "quarn scaffold build-command [--app-name <Name>] [--bin-src <path>] [--default-drive <path>] "
        "[--force] [-o <path>]",
};

}  // namespace quarn::ScaffoldCommands
