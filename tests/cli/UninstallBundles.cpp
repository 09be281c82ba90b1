#include "tests/cli/UninstallBundles.h"

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>

#include "tests/support/Scene.h"

namespace homes {
namespace {

namespace fs = std::filesystem;

const std::string library = scene::home + "/Library";
const std::string drivesApps = "/Volumes/X9/ExternalQuarn/Apps";

class Bundler {
 public:
  Bundler(Dice& dice, Home& home) : dice_(dice), home_(home) {}

  Application make() {
    chooseNames();
    makeApplication();
    return {name_, texts_};
  }

 private:
  void chooseNames() {
    if (!dice_.isOneIn(12)) texts_["CFBundleIdentifier"] = identifier(dice_);
    if (dice_.isOneIn(2)) texts_["CFBundleDisplayName"] = listedName(dice_);
    if (dice_.isOneIn(2)) texts_["CFBundleName"] = listedName(dice_);
    if (!dice_.isOneIn(8)) texts_["CFBundleExecutable"] = executable(dice_);
    name_ = bundleName(dice_);
  }

  void makeApplication() {
    const std::string bundle = name_ + ".app";
    const Lines places = {"/Applications/", "/Applications/", "/Applications/Utilities/",
                          "/Applications/Vendor/", scene::home + "/Applications/"};
    const auto kind = dice_.below(14);
    home_.bundle = dice_.pick(places) + bundle;
    if (kind == 0) home_.bundle = library + "/Application Support/Vendor/" + bundle;
    if (kind == 1) home_.bundle = drivesApps + "/" + bundle;
    if (kind == 2 && dice_.isOneIn(3)) home_.bundle = "/System/Applications/" + bundle;
    // Of some it isn't clear whether ".app" is their extension.
    home_.mayBeRefused = home_.bundle.starts_with("/System") || name_ == "." || name_ == "..";
    if (kind >= 10) {
      makeLink();
    } else {
      if (kind >= 6) home_.target = chooseTarget();
      makeBundle(home_.bundle, kind >= 6);
    }
    chooseOperand(bundle);
  }

  void chooseOperand(const std::string& bundle) {
    home_.folder = scene::home;
    home_.operand = home_.bundle;
    if (dice_.isOneIn(8) && !bundle.starts_with("-")) {
      home_.operand = bundle;
      home_.folder = fs::path(home_.bundle).parent_path();
    }
    if (dice_.isOneIn(8)) home_.operand += "/";
  }

  /// Behind a link or a launcher.
  std::string chooseTarget() {
    const Lines others = {"/",
                          scene::home,
                          "/Applications",
                          "/Volumes/X9",
                          "/Volumes/X9/ExternalQuarn",
                          drivesApps,
                          scene::home + "/Documents",
                          library,
                          otherApplication + "/Contents",
                          otherApplication,
                          home_.bundle + "x",
                          "/nowhere/Foo.app",
                          "../Other.app",
                          "../../Documents",
                          library + "/Caches/com.example.foo"};
    return dice_.isOneIn(2) ? dice_.pick(others) : drivesApps + "/" + name_ + ".app";
  }

  void makeLink() {
    const std::string copy = drivesApps + "/" + name_ + ".app";
    home_.isLink = true;
    home_.target = chooseTarget();
    const bool isThere = !dice_.isOneIn(5);
    if (isThere) makeBundle(copy, false);
    scene::link(home_.bundle, *home_.target);
    // The list is read through the link.
    std::error_code error;
    const bool leadsToOther = fs::equivalent(home_.bundle, otherApplication, error);
    const bool leadsToCopy = isThere && fs::equivalent(home_.bundle, copy, error);
    if (!leadsToCopy) home_.identifier = home_.listedName = home_.executable = std::nullopt;
    if (leadsToOther) {
      home_.identifier = "com.example.other";
      home_.executable = "Foo";
    }
  }

  void makeBundle(const std::string& bundle, bool isLauncher) {
    scene::write(bundle + "/Contents/MacOS/run", "#!/bin/sh\n# of " + bundle + "\n");
    ::chmod((bundle + "/Contents/MacOS/run").c_str(), 0755);
    scene::write(bundle + "/Contents/.hidden", "hidden");
    scene::link(bundle + "/Contents/Current", "MacOS");
    scene::link(bundle + "/Contents/Report", "/Users/you/report");
    if (dice_.isOneIn(4)) scene::write(bundle + "/Contents/_MASReceipt/receipt", "bought");
    if (isLauncher)
      scene::write(bundle + "/Contents/Resources/ExternalAppTarget.txt", " " + *home_.target + "\n");
    makeList(bundle + "/Contents/Info.plist");
  }

  void makeList(const std::string& path) {
    const auto isPlain = [](const auto& item) {
      return std::all_of(item.second.begin(), item.second.end(), [](char letter) { return letter > 0; });
    };
    const auto hasNul = [](const auto& item) { return item.second.find('\0') != std::string::npos; };
    const auto isLettersOnly = [](const auto& item) {
      return std::all_of(item.second.begin(), item.second.end(), [](char letter) { return letter >= 0; });
    };
    const bool needsBinary = std::any_of(texts_.begin(), texts_.end(), hasNul);
    if (needsBinary) std::erase_if(texts_, [&](const auto& item) { return !isLettersOnly(item); });
    const bool isPossible = std::all_of(texts_.begin(), texts_.end(), isPlain);
    const std::string whole =
        needsBinary || (isPossible && dice_.isOneIn(3)) ? plists::binary(texts_) : plists::xml(texts_);
    switch (dice_.below(30)) {
      case 0:
        return;
      case 1:
        return scene::write(path, "");
      case 2:
        return scene::write(path, whole.substr(0, whole.size() / 2));
      case 3:
        return scene::write(path, plists::array(texts_));
      case 4:
        return scene::write(path, plists::numbers(texts_));
      case 5:
        return scene::makeFolder(path);
      case 6:
        scene::write(path, whole);
        ::chmod(path.c_str(), 0);
        return;
      case 7:
        scene::write("/Users/you/list", whole);
        scene::link(path, "/Users/you/list");
        break;
      default:
        scene::write(path, whole);
    }
    remember();
  }

  void remember() {
    const auto text = [this](const std::string& key) -> std::optional<std::string> {
      const auto found = texts_.find(key);
      return found == texts_.end() ? std::nullopt : std::optional(found->second);
    };
    home_.identifier = text("CFBundleIdentifier");
    home_.executable = text("CFBundleExecutable");
    home_.listedName =
        text("CFBundleDisplayName").value_or("").empty() ? text("CFBundleName") : text("CFBundleDisplayName");
    if (home_.listedName && home_.listedName->empty()) home_.listedName.reset();
  }

  Dice& dice_;
  Home& home_;
  std::string name_;
  plists::Texts texts_;
};

}  // namespace

Application makeApplication(Dice& dice, Home& home) {
  return Bundler(dice, home).make();
}

Lines wordsOf(const Application& application) {
  Lines all = {application.name};
  for (const auto& [key, text] : application.texts) all.push_back(text);
  for (std::string text : Lines(all)) {
    text.erase(0, text.find_first_not_of(' '));
    all.push_back(text.substr(0, text.find_last_not_of(' ') + 1));
  }
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  std::erase_if(all, [](const std::string& word) { return word.size() > 300; });
  return all;
}

}  // namespace homes
