#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <set>

#include "Platform/HostPlatform.h"
#include "QuarnCore/move/MoveSelection.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Names = std::set<std::string>;

const MoveSelection::Choices all{.includesProtected = true, .includesRisky = true, .includesRunning = true};

/// The names of the bundles that a run which names none may move.
Names eligible(const MoveSelection::Choices& choices = {}) {
  Names names;
  for (const AppEntry& app : MoveSelection::eligibleApps(hostPlatform(), choices)) {
    names.insert(app.bundlePath.lastComponent());
  }
  return names;
}

/// Whether some process of the room shows a word already, so that nothing could be told from it.
bool isShownByAProcess(const std::string& word) {
  std::string list = scene::run({"/bin/ps", "-axo", "comm,args"}).out;
  std::transform(list.begin(), list.end(), list.begin(), [](unsigned char c) { return std::tolower(c); });
  return list.find(word) != std::string::npos;
}

TEST(MoveSelection, theProtectedNamesStayUnlessAskedFor) {
  const Names names = {"Codex.app",
                       "Cursor.app",
                       "Claude.app",
                       "Terminal.app",
                       "iTerm.app",
                       "iTerm2.app",
                       "Visual Studio Code.app",
                       "Visual Studio Code - Insiders.app",
                       "Xcode.app",
                       "Logic Pro 11.app",
                       "Final Cut Pro 11.app"};
  for (const std::string& name : names) {
    scene::makeApp("/Applications/" + name, {.identifier = "org." + std::to_string(name.size())}, 100);
  }
  scene::makeApp("/Applications/xcode.app", {.identifier = "org.other"}, 100);
  EXPECT_EQ(eligible(), Names{"xcode.app"}) << "names count by their letter case";
  Names every = names;
  every.insert("xcode.app");
  EXPECT_EQ(eligible({.includesProtected = true}), every);
}

TEST(MoveSelection, theProtectedIdentifiersStayUnlessAskedFor) {
  const std::vector<std::string> identifiers = {
      "com.openai.codex",   "com.todesktop.230313mzl4w4u92", "com.anthropic.claudefordesktop",
      "com.apple.Terminal", "com.googlecode.iterm2",         "com.microsoft.VSCode",
      "com.apple.dt.Xcode", "com.microsoft.VSCodeInsiders",  "com.apple.terminal"};
  Names every;
  for (std::size_t i = 0; i < identifiers.size(); ++i) {
    const std::string name = "App" + std::to_string(i) + ".app";
    scene::makeApp("/Applications/" + name, {.identifier = identifiers[i]}, 100);
    every.insert(name);
  }
  EXPECT_EQ(eligible(), Names{"App8.app"}) << "identifiers count by their letter case";
  EXPECT_EQ(eligible({.includesProtected = true}), every);
}

TEST(MoveSelection, theToolItselfStaysWhateverIsAskedFor) {
  scene::makeApp("/Applications/Quarn.app", {.identifier = "org.x"}, 100);
  scene::makeApp("/Applications/Other.app", {.identifier = "com.quarn.quarn"}, 100);
  scene::makeApp("/Applications/Quarn 2.app", {.identifier = "com.quarn.quarn2"}, 100);
  EXPECT_EQ(eligible(all), Names{"Quarn 2.app"});
}

TEST(MoveSelection, riskyApplicationsStayUnlessAskedFor) {
  scene::makeApp("/Applications/Plain.app", {.identifier = "org.p"}, 100);
  scene::makeApp("/Applications/Store.app", {.identifier = "org.s"}, 100);
  scene::write("/Applications/Store.app/Contents/_MASReceipt/receipt", "receipt");
  scene::makeApp("/Applications/Login.app", {.identifier = "org.l"}, 100);
  scene::write("/Applications/Login.app/Contents/Library/LoginItems/Helper", "x");
  scene::makeApp("/Applications/System.app", {.identifier = "org.y"}, 100);
  scene::write("/Applications/System.app/Contents/Library/SystemExtensions/x", "x");
  scene::makeApp("/Applications/Kernel.app", {.identifier = "org.k"}, 100);
  scene::write("/Applications/Kernel.app/Contents/Library/Extensions/x", "x");
  scene::makeApp("/Applications/Empty.app", {.identifier = "org.e"}, 100);
  scene::makeFolder("/Applications/Empty.app/Contents/Library/LoginItems");
  EXPECT_EQ(eligible(), (Names{"Plain.app", "Empty.app"}));
  EXPECT_EQ(eligible({.includesProtected = true}), (Names{"Plain.app", "Empty.app"}));
  EXPECT_EQ(eligible({.includesRisky = true}),
            (Names{"Plain.app", "Empty.app", "Store.app", "Login.app", "System.app", "Kernel.app"}));
}

TEST(MoveSelection, aRunningApplicationStaysUnlessAskedFor) {
  scene::makeApp("/Applications/Foo Bar.app", {}, 100);
  scene::makeApp("/Applications/Idle.app", {.identifier = "org.i"}, 100);
  const std::string executable = "/Applications/Foo Bar.app/Contents/MacOS/Foo";
  std::filesystem::copy_file("/bin/sleep", executable, std::filesystem::copy_options::overwrite_existing);
  scene::Background running({executable, "60"});
  ASSERT_TRUE(scene::appears("/proc/" + std::to_string(running.pid())));
  for (int i = 0; i < 100 && eligible().contains("Foo Bar.app"); ++i) ::usleep(20'000);
  EXPECT_EQ(eligible(), Names{"Idle.app"});
  EXPECT_EQ(eligible({.includesRunning = true}), (Names{"Foo Bar.app", "Idle.app"}));
}

TEST(MoveSelection, aNameWithTheWordOfALiveToolIsProtectedWhileAProcessShowsTheWord) {
  for (const std::string word : {"Codex", "Cursor", "Claude"}) {
    std::string lower = word;
    lower[0] = static_cast<char>(std::tolower(word[0]));
    if (isShownByAProcess(lower)) GTEST_SKIP() << "a process outside the room shows the word " << word;
    const std::string name = word + " Helper.app";
    scene::makeApp("/Applications/" + name, {.identifier = "org." + word}, 100);
    EXPECT_EQ(eligible(), Names{name}) << "nothing runs";
    {
      scene::Background tool({"/bin/sh", "-c", "sleep 60; : " + lower});
      for (int i = 0; i < 100 && !isShownByAProcess(lower); ++i) ::usleep(20'000);
      EXPECT_EQ(eligible(), Names{});
      EXPECT_EQ(eligible({.includesProtected = true}), Names{name});
    }
    EXPECT_EQ(eligible(), Names{name}) << "the tool has ended";
    std::filesystem::remove_all("/Applications/" + name);
  }
}

TEST(MoveSelection, theDisplayNameDecidesWhetherALiveToolIsMeant) {
  if (isShownByAProcess("codex")) GTEST_SKIP() << "a process outside the room shows the word";
  scene::makeApp("/Applications/Plain.app", {.identifier = "org.p", .displayName = "My cODEX thing"}, 100);
  scene::makeApp("/Applications/Other.app", {.identifier = "org.o", .displayName = "My Codecs"}, 100);
  scene::Background tool({"/bin/sh", "-c", "sleep 60; : codex"});
  for (int i = 0; i < 100 && !isShownByAProcess("codex"); ++i) ::usleep(20'000);
  EXPECT_EQ(eligible(), Names{"Other.app"});
}

TEST(MoveSelection, theEligibleComeByNameAndWithSizes) {
  scene::makeApp("/Applications/Beta.app", {.identifier = "org.b"}, 50'000);
  scene::makeApp("/Applications/Alpha.app", {.identifier = "org.a"}, 10'000);
  const auto apps = MoveSelection::eligibleApps(hostPlatform(), {});
  ASSERT_EQ(apps.size(), 2u);
  EXPECT_EQ(apps[0].name, "Alpha");
  EXPECT_GE(apps[0].appSize, 10'000);
  EXPECT_GE(apps[1].appSize, 50'000);
}

}  // namespace
}  // namespace quarn
