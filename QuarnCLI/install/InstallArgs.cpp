#include "QuarnCLI/install/InstallArgs.h"

#include "Platform/PathText.h"
#include "QuarnCLI/CLIError.h"
#include "QuarnCLI/install/InstallFlags.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "QuarnCore/installer/InstallerOptionLoader.h"
#include "QuarnCore/installer/SessionStore.h"

namespace quarn::InstallArgs {
namespace {

InstallerOption knownOption(const ReadOnlyPlatform& platform, const std::optional<std::string>& id) {
  if (!id) throw CLIError("Missing --option.");
  auto option = InstallerOptionLoader::find(platform, *id);
  if (!option) throw CLIError("Unknown option: " + *id);
  return *std::move(option);
}

}  // namespace

Choice choiceOf(const ReadOnlyPlatform& platform, const CLIArgs& args) {
  const auto id = args.value(InstallFlags::option);
  const auto targetDrive = args.path(InstallFlags::targetDrive);
  const auto linkRoot = args.path(InstallFlags::applicationLinkRoot);
  Choice choice{.source = sourceOf(platform, args), .option = knownOption(platform, id), .targetDrive = {}};
  if (!targetDrive) throw CLIError("Missing --target-drive.");
  choice.targetDrive = PathText::fileURL(platform.places, *targetDrive);
  if (linkRoot) choice.option.applicationLinkRoot = PathText::fileURL(platform.places, *linkRoot).text();
  return choice;
}

InstallerSource sourceOf(const ReadOnlyPlatform& platform, const CLIArgs& args) {
  const auto given = args.first();
  if (!given || given->empty() || given->starts_with("--")) throw CLIError("Missing source.");
  return InstallerSource::of(platform.places, *given);
}

InstallerSession sessionOf(const ReadOnlyPlatform& platform, const CLIArgs& args) {
  const auto id = args.first();
  if (!id) throw CLIError("Missing session id.");
  auto session = SessionStore::find(platform, *id, AppStorageNames::sessionRoot(platform.places));
  if (!session) throw CLIError("Session not found.");
  return *std::move(session);
}

}  // namespace quarn::InstallArgs
