#include "QuarnCore/installer/InstallerOptionLoader.h"

#include <algorithm>
#include <map>

#include "Platform/Text.h"
#include "QuarnCore/foundation/AppStorageNames.h"
#include "TOMLDecoder/TOMLDecoder.h"

namespace quarn::InstallerOptionLoader {
namespace {

/// Collects the files with the extension of option files, at any depth.
class OptionFiles : public WalkVisitor {
 public:
  explicit OptionFiles(const Path& root) : root_(root) {}

  WalkStep visit(const WalkItem& item) override {
    const Path path = root_.appending(item.relativePath());
    if (Text::lowercased(path.extension()) == "toml") found.push_back(path);
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError&) override { return WalkStep::proceed; }

  std::vector<Path> found;

 private:
  Path root_;
};

std::vector<Path> tomlURLs(const ReadOnlyPlatform& platform, const Path& root) {
  OptionFiles files(root);
  platform.files.walk(root, Hidden::skipped, files);
  std::sort(files.found.begin(), files.found.end(),
            [](const Path& a, const Path& b) { return Text::precedes(a.text(), b.text()); });
  return files.found;
}

std::vector<Path> bundledOptionURLs(const ReadOnlyPlatform& platform) {
  // The program is <prefix>/libexec/quarn, so <prefix> is two levels up.
  const Path resources = platform.places.executable().parent().parent().appending("share/quarn");
  const Path options = resources.appending(AppStorageNames::installerOptions);
  return tomlURLs(platform, platform.files.exists(options) ? options : resources);
}

std::optional<InstallerOption> decoded(const ReadOnlyPlatform& platform, const Path& file) {
  auto content = platform.files.read(file);
  if (!content) return std::nullopt;
  try {
    return toml::TOMLDecoder().decode<InstallerOption>(*std::move(content));
  } catch (const toml::TOMLError&) {
    return std::nullopt;
  }
}

}  // namespace

std::vector<InstallerOption> loadAll(const ReadOnlyPlatform& platform, const Path& userRoot) {
  std::vector<Path> files = bundledOptionURLs(platform);
  const std::vector<Path> own = tomlURLs(platform, userRoot);
  files.insert(files.end(), own.begin(), own.end());
  std::map<std::string, InstallerOption> byID;
  for (const Path& file : files) {
    auto option = decoded(platform, file);
    if (!option) continue;
    std::string key = Text::canonical(option->id);
    byID.insert_or_assign(std::move(key), *std::move(option));
  }
  std::vector<InstallerOption> options;
  for (auto& [id, option] : byID) options.push_back(std::move(option));
  std::stable_sort(options.begin(), options.end(), [](const InstallerOption& a, const InstallerOption& b) {
    return Text::precedes(a.label, b.label);
  });
  return options;
}

std::optional<InstallerOption> find(const ReadOnlyPlatform& platform, const std::string& id) {
  for (InstallerOption& option :
       loadAll(platform, AppStorageNames::userInstallerOptionsRoot(platform.places))) {
    if (Text::equal(option.id, id)) return std::move(option);
  }
  return std::nullopt;
}

}  // namespace quarn::InstallerOptionLoader
