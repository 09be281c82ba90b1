#include "tests/cli/InstallScenes.h"

/// What is asked of the arguments of the install commands, in which order, and the list of options.

using expected::failed;
using expected::printed;
using expected::shown;
using installs::Words;

namespace {

const std::string source = "/Users/me/Foo.app";

std::string answerTo(const Words& words) {
  return shown(installs::quarn(words));
}

TEST(InstallArguments, anActionIsNeededAndKnown) {
  EXPECT_EQ(answerTo({}), failed("Missing install action."));
  for (const std::string action : {"bogus", "", "--format", "Run", "uninstall-plans"})
    EXPECT_EQ(answerTo({action}), failed("Unknown install action: " + action));
}

TEST(InstallArguments, aSourceComesFirst) {
  for (const std::string command : {"inspect", "plan", "run"}) {
    EXPECT_EQ(answerTo({command}), failed("Missing source.")) << command;
    EXPECT_EQ(answerTo({command, "--format", "toml"}), failed("Missing source.")) << command;
    EXPECT_EQ(answerTo({command, "--format", "toml", source}), failed("Missing source.")) << command;
    EXPECT_EQ(answerTo({command, ""}), failed("Missing source.")) << command;
  }
}

TEST(InstallArguments, theSourceIsAskedForBeforeTheOptionAndThatBeforeTheDrive) {
  for (const std::string command : {"plan", "run"}) {
    SCOPED_TRACE(command);
    EXPECT_EQ(answerTo({command, "--option", "bogus", "--target-drive"}), failed("Missing source."));
    EXPECT_EQ(answerTo({command, source}), failed("Missing --option."));
    EXPECT_EQ(answerTo({command, source, "--target-drive", "/Volumes/X9"}), failed("Missing --option."));
    EXPECT_EQ(answerTo({command, source, "--option"}), failed("Missing --option."));
    EXPECT_EQ(answerTo({command, source, "--option", "bogus"}), failed("Unknown option: bogus"));
    EXPECT_EQ(answerTo({command, source, "--option", ""}), failed("Unknown option: "));
    EXPECT_EQ(answerTo({command, source, "--option", "trusted-external"}), failed("Missing --target-drive."));
    EXPECT_EQ(answerTo({command, source, "--option", "trusted-external", "--target-drive"}),
              failed("Missing --target-drive."));
    EXPECT_EQ(answerTo({command, source, "--option", "trusted-external", "--target-drive", ""}),
              failed("Missing --target-drive."));
  }
  EXPECT_EQ(installs::namesIn(installs::sessionsRoot), Words{}) << "no run has begun";
}

TEST(InstallArguments, aSecondFlagOfTheSameNameIsNotRead) {
  EXPECT_EQ(answerTo({"plan", source, "--option", "bogus", "--option", "trusted-external"}),
            failed("Unknown option: bogus"));
}

TEST(InstallArguments, anIdentifierOfASessionIsNeeded) {
  EXPECT_EQ(answerTo({"resume"}), failed("Usage: install resume <session-id>"));
  EXPECT_EQ(answerTo({"uninstall-plan"}), failed("Missing session id."));
  EXPECT_EQ(answerTo({"uninstall"}), failed("Missing session id."));
}

TEST(InstallArguments, anIdentifierOfNoSessionIsRefused) {
  for (const std::string id : {"20260101_000000", "--verbose", "", ".", "..", "a/b"}) {
    EXPECT_EQ(answerTo({"resume", id}), failed("No session with id " + id));
    EXPECT_EQ(answerTo({"uninstall-plan", id}), failed("Session not found."));
    EXPECT_EQ(answerTo({"uninstall", id}), failed("Session not found."));
  }
}

const std::string scripts = "tracked-script-external\tExternal drive, scripts allowed";
const std::string trusted = "trusted-external\tExternal drive, trusted sources";
const std::string asTSV = "option\t" + scripts + "\texternal-tracked\noption\t" + trusted + "\texternal\n";

TEST(InstallOptions, areListedInThreeForms) {
  for (const Words& words : {Words{"options"}, Words{"options", "--format", "tsv"},
                             Words{"options", "--format", "bogus"}, Words{"options", "--format"}})
    EXPECT_EQ(answerTo(words), printed(asTSV));
  EXPECT_EQ(answerTo({"options", "--format", "human"}), printed(scripts + "\n" + trusted + "\n"));
  EXPECT_EQ(answerTo({"options", "--format", "toml"}),
            printed("[[options]]\nid = \"tracked-script-external\"\n"
                    "label = \"External drive, scripts allowed\"\nstrategy = \"external-tracked\"\n"
                    "[[options]]\nid = \"trusted-external\"\n"
                    "label = \"External drive, trusted sources\"\nstrategy = \"external\"\n"));
}

/// What the program says when it stands in a folder without the files that come with it.
std::string answerOfTheBareProgramTo(const std::string& format) {
  const std::string bare = "/tmp/bare/libexec/quarn";
  if (!scene::exists(bare)) {
    scene::makeFolder("/tmp/bare/libexec");
    std::filesystem::copy_file("/usr/local/libexec/quarn", bare);
  }
  return shown(scene::run({bare, "install", "options", "--format", format}));
}

TEST(InstallOptions, noneIsOneLineFeedInTSVAndNothingOtherwise) {
  EXPECT_EQ(answerOfTheBareProgramTo("tsv"), printed("\n"));
  EXPECT_EQ(answerOfTheBareProgramTo("human"), printed(""));
  EXPECT_EQ(answerOfTheBareProgramTo("toml"), printed(""));
}

TEST(InstallOptions, theUsersOwnReplaceThoseThatComeWithTheProgram) {
  scene::write(installs::optionsRoot + "/mine.toml",
               installs::optionFile("trusted-external", {{"label", "\"A replaced one\""}}));
  EXPECT_EQ(answerTo({"options"}), printed("option\ttrusted-external\tA replaced one\town\noption\t" +
                                           scripts + "\texternal-tracked\n"));
}

TEST(InstallOptions, theLaterFileOfTheUserWins) {
  scene::write(installs::optionsRoot + "/b.toml",
               installs::optionFile("trusted-external", {{"label", "\"A later one\""}}));
  scene::write(installs::optionsRoot + "/a.toml",
               installs::optionFile("trusted-external", {{"label", "\"A former one\""}}));
  EXPECT_EQ(answerTo({"options", "--format", "human"}),
            printed("trusted-external\tA later one\n" + scripts + "\n"));
}

TEST(InstallOptions, areSortedByLabelAndFoundInSubfoldersWithAnyLetterCase) {
  scene::write(installs::optionsRoot + "/deep/er/one.TOML",
               installs::optionFile("one", {{"label", "\"B\""}}));
  scene::write(installs::optionsRoot + "/two.ToMl", installs::optionFile("two", {{"label", "\"A\""}}));
  scene::write(installs::optionsRoot + "/three.tom", installs::optionFile("three"));
  scene::write(installs::optionsRoot + "/.hidden.toml", installs::optionFile("hidden"));
  scene::write(installs::optionsRoot + "/.folder/hidden.toml", installs::optionFile("hidden"));
  EXPECT_EQ(answerTo({"options", "--format", "human"}),
            printed("two\tA\none\tB\n" + scripts + "\n" + trusted + "\n"));
}

TEST(InstallOptions, aValueIsQuotedInTOMLAndBareInTSV) {
  installs::writeOption("odd", {{"label", R"("a \"quoted\\ one\tand\nmore")"}, {"strategy", "\"\""}});
  EXPECT_EQ(answerOfTheBareProgramTo("tsv"), printed("option\todd\ta \"quoted\\ one\tand\nmore\t\n"));
  EXPECT_EQ(
      answerOfTheBareProgramTo("toml"),
      printed("[[options]]\nid = \"odd\"\nlabel = \"a \\\"quoted\\\\ one\tand\nmore\"\nstrategy = \"\"\n"));
}

TEST(InstallOptions, aFileWithAMissingOrWrongKeyIsLeftOutWithoutAWord) {
  for (const char* key : {"id", "label", "strategy", "sourceKinds", "allowUntrustedPackages",
                          "externalRootName", "applicationLinkRoot", "track", "relocateSafeApps"}) {
    installs::writeOption("own", {{key, ""}});
    EXPECT_EQ(answerTo({"options"}), printed(asTSV)) << key;
    installs::writeOption("own", {{key, "1"}});
    EXPECT_EQ(answerTo({"options"}), printed(asTSV)) << key;
  }
  installs::writeOption("own", {{"sourceKinds", "[\"app\", \"bogus\"]"}});
  EXPECT_EQ(answerTo({"options"}), printed(asTSV));
  installs::writeOption("own", {{"allowUntrustedScripts", "\"yes\""}});
  EXPECT_EQ(answerTo({"options"}), printed(asTSV));
  installs::writeOption("own");
  EXPECT_NE(answerTo({"options"}), printed(asTSV)) << "the key that may be absent, and no other";
}

}  // namespace
