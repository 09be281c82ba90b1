#include <gtest/gtest.h>
#include <sys/mount.h>

#include "tests/cli/DedupeScenes.h"

using namespace dedupes;

namespace {

struct Texts {
  std::string human, tsv, toml;
};

/// The plan of the scene in each form.
Texts planTexts() {
  const auto all = expected::allocated(launcher) + expected::allocated("/Applications/Without.app") +
                   expected::allocated(own + "/Bar.app");
  return {
      "Duplicate launcher groups: 2\nRemovable: 3 item(s), " + expected::size(all) +
          "\n\n== Bar ==\nkeep:   /Applications/Bar.app\nremove: /Users/me/Applications/Bar.app\nreason: " +
          reason +
          "\n\n== The \"Foo\" ==\nkeep:   /Applications/Foo.app\nremove: /Applications/Foo Launcher.app\n"
          "        target: /Applications/Foo.app\nremove: /Applications/Without.app\nreason: " +
          reason + "\n",
      "bundle_id\tdisplay_name\taction\tkind\tpath\ttarget\tsize_bytes\treason\n"
      "com.example.bar\tBar\tkeep\trealApp\t/Applications/Bar.app\t\t" +
          bytes("/Applications/Bar.app") + "\t" + reason +
          "\ncom.example.bar\tBar\tremove\tquarnLauncher\t/Users/me/Applications/Bar.app\t\t" +
          bytes(own + "/Bar.app") + "\t" + reason +
          "\ncom.example.foo\tThe \"Foo\"\tkeep\trealApp\t/Applications/Foo.app\t\t" + bytes(app) + "\t" +
          reason +
          "\ncom.example.foo\tThe \"Foo\"\tremove\tquarnLauncher\t/Applications/Foo "
          "Launcher.app\t/Applications/Foo.app\t" +
          bytes(launcher) + "\t" + reason +
          "\ncom.example.foo\tThe \"Foo\"\tremove\tquarnLauncher\t/Applications/Without.app\t\t" +
          bytes("/Applications/Without.app") + "\t" + reason + "\n",
      "[summary]\nscannedAt = \"NOW\"\ngroups = 2\nremovableItems = 3\nremovableBytes = " +
          std::to_string(all) +
          "\n\n[[group]]\nbundleId = \"com.example.bar\"\ndisplayName = \"Bar\"\n"
          "keep = \"/Applications/Bar.app\"\nreason = \"" +
          reason +
          "\"\nremove = [\"/Users/me/Applications/Bar.app\"]\n"
          "\n[[group]]\nbundleId = \"com.example.foo\"\ndisplayName = \"The \\\"Foo\\\"\"\n"
          "keep = \"/Applications/Foo.app\"\nreason = \"" +
          reason + "\"\nremove = [\"/Applications/Foo Launcher.app\", \"/Applications/Without.app\"]\n"};
}

TEST(DedupeScan, tellsTheDuplicatesInThreeFormsAndEndsWithTwo) {
  setScene();
  const Texts texts = planTexts();
  const auto before = scene::tree("/Applications");
  for (const std::string word : {"scan", "plan"}) {
    EXPECT_EQ(timeless(dedupe({word})), said(2, texts.human));
    EXPECT_EQ(timeless(dedupe({word, "--format", "human"})), said(2, texts.human));
    EXPECT_EQ(timeless(dedupe({word, "--format", "tsv"})), said(2, texts.tsv));
    EXPECT_EQ(timeless(dedupe({word, "--format", "toml"})), said(2, texts.toml));
    for (const Lines& odd : {Lines{word, "--format", "json"}, Lines{word, "--format"},
                             Lines{word, "--yes", "word"}, Lines{word, "--format", "TSV"}})
      EXPECT_EQ(timeless(dedupe(odd)), said(2, texts.human));
  }
  EXPECT_EQ(scene::tree("/Applications"), before);
}

TEST(DedupeScan, withoutDuplicatesEndsWithZero) {
  scene::makeApp(app);
  EXPECT_EQ(timeless(dedupe({"scan"})),
            said(0, "Duplicate launcher groups: 0\nRemovable: 0 item(s), Zero KB\n"));
  EXPECT_EQ(timeless(dedupe({"plan", "--format", "tsv"})),
            said(0, "bundle_id\tdisplay_name\taction\tkind\tpath\ttarget\tsize_bytes\treason\n"));
  EXPECT_EQ(timeless(dedupe({"scan", "--format", "toml"})),
            said(0, "[summary]\nscannedAt = \"NOW\"\ngroups = 0\nremovableItems = 0\nremovableBytes = 0\n"));
}

TEST(DedupeRunCommand, withoutYesOrWithDryRunChangesNothing) {
  setScene();
  const Texts texts = planTexts();
  const auto before = scene::tree("/Applications"), home = scene::tree("/Users/me");
  for (const Lines& words : {Lines{"run"}, Lines{"run", "--dry-run"}, Lines{"run", "--yes", "--dry-run"},
                             Lines{"run", "--dry-run", "--yes"}, Lines{"run", "--YES"}}) {
    EXPECT_EQ(timeless(dedupe(words)), said(0, texts.human + "dry-run: no files trashed\n"));
  }
  EXPECT_EQ(timeless(dedupe({"run", "--format", "tsv"})),
            said(0, texts.tsv + "\naction\tpath\tsucceeded\ttrashed_to\terror\n"
                                "trash\t/Users/me/Applications/Bar.app\ttrue\t\t\n"
                                "trash\t/Applications/Foo Launcher.app\ttrue\t\t\n"
                                "trash\t/Applications/Without.app\ttrue\t\t\n"));
  EXPECT_EQ(timeless(dedupe({"run", "--format", "toml"})),
            said(0, texts.toml + "[run]\ndryRun = true\nmovedItems = 3\n"));
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_EQ(scene::tree("/Users/me"), home);
}

TEST(DedupeRunCommand, withYesTakesTheDuplicatesToTheTrashAndEndsWithZero) {
  for (const std::string form : {"human", "tsv", "toml"}) {
    setScene();
    std::filesystem::remove_all(trash);
    const Texts texts = planTexts();
    const auto whole = scene::tree(launcher), stays = scene::tree(app);
    const std::string shown = timeless(dedupe({"run", "--yes", "--format", form}));
    if (form == "human") {
      EXPECT_EQ(shown, said(0, texts.human + "run: trashed 3 item(s)\n"));
    }
    if (form == "toml") {
      EXPECT_EQ(shown, said(0, texts.toml + "[run]\ndryRun = false\nmovedItems = 3\n"));
    }
    if (form == "tsv") {
      EXPECT_EQ(
          shown,
          said(0, texts.tsv + "\naction\tpath\tsucceeded\ttrashed_to\terror\n"
                              "trash\t/Users/me/Applications/Bar.app\ttrue\t/Users/me/.Trash/Bar.app\t\n"
                              "trash\t/Applications/Foo Launcher.app\ttrue\t/Users/me/.Trash/Foo "
                              "Launcher.app\t\n"
                              "trash\t/Applications/Without.app\ttrue\t/Users/me/.Trash/Without.app\t\n"));
    }
    EXPECT_EQ(scene::tree(trash + "/Foo Launcher.app"), whole);
    EXPECT_EQ(scene::tree(app), stays);
    EXPECT_FALSE(scene::exists(launcher));
    EXPECT_TRUE(scene::exists("/Applications/Elsewhere.app"));
  }
  EXPECT_EQ(timeless(dedupe({"run", "--yes"})),
            said(0, "Duplicate launcher groups: 0\nRemovable: 0 item(s), Zero KB\nrun: trashed 0 item(s)\n"));
}

TEST(DedupeRunCommand, whatCouldNotGoIsToldAndEndsWithOne) {
  setScene();
  std::filesystem::permissions("/Applications",
                               std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
  const Texts texts = planTexts();
  const auto refusal = [](const std::string& name) {
    return "“" + name + "” couldn’t be moved to the trash because you don’t have permission to access it.";
  };
  EXPECT_EQ(timeless(dedupe({"run", "--yes"})),
            said(1, texts.human + "run: trashed 1 item(s)\nFAIL\t/Applications/Foo Launcher.app\t" +
                        refusal("Foo Launcher.app") + "\nFAIL\t/Applications/Without.app\t" +
                        refusal("Without.app") + "\n"));
  EXPECT_TRUE(scene::exists(trash + "/Bar.app"));
  scene::makeApp(own + "/Bar.app", {.identifier = "com.example.bar.externallauncher"}, 70'000);
  EXPECT_EQ(timeless(dedupe({"run", "--yes", "--format", "tsv"})),
            said(1, texts.tsv +
                        "\naction\tpath\tsucceeded\ttrashed_to\terror\n"
                        "trash\t/Users/me/Applications/Bar.app\ttrue\t/Users/me/.Trash/Bar 2.app\t\n"
                        "trash\t/Applications/Foo Launcher.app\tfalse\t\t" +
                        refusal("Foo Launcher.app") + "\ntrash\t/Applications/Without.app\tfalse\t\t" +
                        refusal("Without.app") + "\n"));
  scene::makeApp(own + "/Bar.app", {.identifier = "com.example.bar.externallauncher"}, 70'000);
  EXPECT_EQ(timeless(dedupe({"run", "--yes", "--format", "toml"})),
            said(1, texts.toml + "[run]\ndryRun = false\nmovedItems = 3\n"));
  EXPECT_EQ(dedupe({"run"}).status, 0) << "a rehearsal doesn't fail";
}

TEST(DedupeRunCommand, aTrashThatCantBeUsedLeavesTheLaunchers) {
  setScene();
  scene::write(trash, "in the way");
  const auto before = scene::tree("/Applications");
  const auto run = dedupe({"run", "--yes"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(
      run.out.find("run: trashed 0 item(s)\nFAIL\t/Users/me/Applications/Bar.app\t“Bar.app” couldn’t be "
                   "moved to the trash because the volume “Macintosh HD” doesn’t have one.\n"),
      std::string::npos)
      << run.out;
  EXPECT_EQ(scene::tree("/Applications"), before);
  EXPECT_EQ(scene::read(trash), "in the way");
}

TEST(DedupeRunCommand, aLauncherInALinkedFolderGoesToTheTrashOfItsDrive) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(app);
  scene::makeLauncher("/Volumes/X9/Tools/L.app", app);
  scene::link("/Applications/Tools", "/Volumes/X9/Tools");
  const auto whole = scene::tree("/Volumes/X9/Tools/L.app");
  const auto run = dedupe({"run", "--yes", "--format", "tsv"});
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_TRUE(
      run.out.ends_with("\ntrash\t/Applications/Tools/L.app\ttrue\t" + scene::driveTrash() + "/L.app\t\n"))
      << run.out;
  EXPECT_EQ(scene::tree(scene::driveTrash() + "/L.app"), whole);
}

TEST(DedupeRunCommand, aReadOnlyDriveKeepsItsLauncher) {
  if (!scene::hasMounts()) GTEST_SKIP() << "needs real mounts";
  scene::makeApp(app);
  scene::plug("Fixed", "1m");
  scene::makeLauncher("/Volumes/Fixed/L.app", app);
  ASSERT_EQ(::mount(nullptr, "/Volumes/Fixed", nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
  scene::link("/Applications/Tools", "/Volumes/Fixed");
  const auto run = dedupe({"run", "--yes"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(
      run.out.ends_with("run: trashed 0 item(s)\nFAIL\t/Applications/Tools/L.app\t“L.app” couldn’t be "
                        "moved to the trash because the volume “Fixed” doesn’t have one.\n"))
      << run.out;
  EXPECT_TRUE(scene::exists("/Volumes/Fixed/L.app"));
}

}  // namespace
