#include <filesystem>

#include "Platform/CocoaError.h"
#include "QuarnCore/plugins/PluginInstaller.h"
#include "tests/plugins/Installing.h"

using namespace quarn::installing;

namespace quarn {
namespace {

namespace fs = std::filesystem;

class PluginInstalling : public Installing {
 protected:
  void expectInstalled(const std::string& content = "code") {
    EXPECT_EQ(scene::target(systemLink), external);
    EXPECT_EQ(scene::read(external + "/Contents/MacOS/code"), content);
  }
  void expectLinkUntouched() {
    EXPECT_FALSE(scene::exists(systemLink));
    EXPECT_TRUE(scene::exists(external + "/Contents/MacOS/code"));
  }
};

TEST_F(PluginInstalling, copiesAndLinksAndTellsEachStep) {
  const auto batch = installAll({bundleAt(source)});
  EXPECT_EQ(batch, (PluginInstallBatch{
                       "/Volumes/X9", {{bundleAt(source), Outcome::installed, external, systemLink, "ok"}}}));
  EXPECT_EQ(log_, (Lines{"plan\tVST3\tA.vst3\t-> " + external, "copied\t" + external,
                         "symlinked\t" + systemLink + "\t-> " + external}));
  expectInstalled();
  EXPECT_EQ(scene::tree(external), scene::tree(source));
}

TEST_F(PluginInstalling, callsTheToolsInThisOrderAndWritesOutBeforeAndAfter) {
  options_ = {.overwrite = true, .stripQuarantine = true, .adhocCodesign = true};
  makeBundle(external, "old");
  makeBundle(systemLink, "native");
  Lines operations;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    if (operation.find("/usr/bin/find") == std::string::npos) operations.push_back(operation);
    return {};
  });
  EXPECT_EQ(told(install(bundleAt(source), gated.platform())), "installed: ok");
  EXPECT_EQ(operations, (Lines{
                            "createFolder " + plugins + "/VST3",
                            "remove " + external,
                            "start /usr/bin/ditto --rsrc " + source + " " + external,
                            "flush " + external,
                            "start /usr/bin/xattr -cr " + external,
                            "start /usr/bin/codesign --force --deep --sign - " + external,
                            "flush " + external,
                            "start " + gantrix + " rm -rf " + systemLink,
                            "start " + gantrix + " ln -s " + external + " " + systemLink,
                            "flush " + folder,
                        }));
}

TEST_F(PluginInstalling, leavesAttributesAndSignatureAloneUnlessAsked) {
  std::string started;
  GatedPlatform gated([&](const std::string& operation) -> Result<void> {
    started += operation + "\n";
    return {};
  });
  install(bundleAt(source), gated.platform());
  EXPECT_EQ(started.find("xattr"), std::string::npos);
  EXPECT_EQ(started.find("codesign"), std::string::npos);
}

TEST_F(PluginInstalling, aDryRunTellsThePlanAndNothingElseHappens) {
  options_.dryRun = true;
  drive_ = Path("/Volumes/None");
  const Lines before = everything();
  const auto report = install(bundleAt("/nowhere/A.vst3"));
  const std::string there = "/Volumes/None/ExternalQuarn/Plugins/VST3/A.vst3";
  EXPECT_EQ(told(report), "skipped: dry-run");
  EXPECT_EQ(report.destinationPath, there);
  EXPECT_EQ(report.symlinkPath, systemLink);
  EXPECT_EQ(log_, Lines{"plan\tVST3\tA.vst3\t-> " + there});
  EXPECT_EQ(everything(), before);
}

TEST_F(PluginInstalling, passesOverWhatIsOnTheDriveUnlessToldToOverwrite) {
  options_.overwrite = false;
  makeBundle(external, "old");
  const Lines before = everything();
  EXPECT_EQ(told(install()), "skipped: destination exists, overwrite disabled");
  EXPECT_EQ(log_, Lines{"plan\tVST3\tA.vst3\t-> " + external});
  EXPECT_EQ(everything(), before) << "and the link isn't made";
}

TEST_F(PluginInstalling, passesOverALinkThatLeadsNowhereInTheCopysPlace) {
  options_.overwrite = false;
  scene::link(external, "/nowhere");
  EXPECT_EQ(told(install()), "skipped: destination exists, overwrite disabled");
  options_.overwrite = true;
  EXPECT_EQ(told(install()), "installed: ok");
  expectInstalled();
  EXPECT_FALSE(scene::isLink(external));
}

TEST_F(PluginInstalling, overwritesWithoutMerging) {
  makeBundle(external, "old");
  scene::write(external + "/Contents/of the old one", "");
  EXPECT_EQ(told(install()), "installed: ok");
  expectInstalled();
  EXPECT_EQ(scene::tree(external), scene::tree(source));
}

TEST_F(PluginInstalling, overwritesALinkAndLeavesWhatItLedTo) {
  makeBundle("/Volumes/X9/elsewhere", "elsewhere");
  scene::link(external, "/Volumes/X9/elsewhere");
  EXPECT_EQ(told(install()), "installed: ok");
  EXPECT_EQ(scene::tree(external), scene::tree(source));
  EXPECT_EQ(scene::read("/Volumes/X9/elsewhere/Contents/MacOS/code"), "elsewhere");
}

TEST_F(PluginInstalling, replacesALinkThatLeadsElsewhereWhetherToldToOverwriteOrNot) {
  for (const std::string target : {"/Users/me", "/nowhere", "../relative"}) {
    fs::remove_all(external);
    fs::remove_all(systemLink);
    scene::link(systemLink, target);
    options_.overwrite = false;
    EXPECT_EQ(told(install()), "installed: ok") << target;
    expectInstalled();
  }
  EXPECT_TRUE(scene::exists(source));
}

TEST_F(PluginInstalling, replacesARealBundleOfTheSystem) {
  makeBundle(systemLink, "native");
  EXPECT_EQ(told(install()), "installed: ok");
  expectInstalled();
}

TEST_F(PluginInstalling, aVST2PluginLiesInFoldersOfTwoNames) {
  const std::string vst = "/Users/me/plug-ins/A.vst";
  makeBundle(vst);
  EXPECT_EQ(told(install(bundleAt(vst, PluginFormat::vst2))), "installed: ok");
  EXPECT_EQ(scene::target("/Library/Audio/Plug-Ins/VST/A.vst"), plugins + "/VST2/A.vst");
}

TEST_F(PluginInstalling, aPluginThatIsALinkIsCopiedAsWhatItLeadsTo) {
  const std::string other = "/Users/me/links/A.vst3";
  scene::link(other, source);
  EXPECT_EQ(told(install(bundleAt(other))), "installed: ok");
  EXPECT_EQ(scene::tree(external), scene::tree(source));
  EXPECT_FALSE(scene::isLink(external));
  EXPECT_EQ(scene::target(other), source);
}

TEST_F(PluginInstalling, namesGoThroughAsTheyAre) {
  for (const std::string& name :
       Lines{"A \"b\" 'c' $d;*.vst3", "-rf.vst3", "a\tb.vst3", "line\nfeed.vst3", "Café\\.vst3", "x y.VST3",
             // Both forms that Unicode has for one letter, and as many bytes as a name may have.
             "\u00dc.vst3", "U\u0308.vst3", std::string(250, 'a') + ".vst3"}) {
    const std::string odd = "/Users/me/odd/" + name;
    makeBundle(odd);
    EXPECT_EQ(told(install(bundleAt(odd))), "installed: ok") << name;
    EXPECT_EQ(scene::target(folder + "/" + name), plugins + "/VST3/" + name);
    EXPECT_EQ(scene::tree(plugins + "/VST3/" + name), scene::tree(odd));
  }
}

TEST_F(PluginInstalling, ofTwoOfOneNameTheLaterReplacesTheEarlier) {
  const std::string later = "/Users/me/plug-ins/old/A.vst3";
  makeBundle(later, "later");
  const auto batch = installAll({bundleAt(source), bundleAt(later)});
  EXPECT_EQ(batch.installed(), 2u);
  expectInstalled("later");
  options_.overwrite = false;
  fs::remove_all(external);
  const auto kept = installAll({bundleAt(source), bundleAt(later)});
  EXPECT_EQ(told(kept.reports[1]), "skipped: destination exists, overwrite disabled");
  expectInstalled("code");
}

TEST_F(PluginInstalling, afterAFailureTheNextOneIsTried) {
  makeBundle("/Users/me/plug-ins/B.vst3");
  order("ditto", "on */A.vst3 fail 1 ditto: A: Input/output error");
  const auto batch = installAll({bundleAt(source), bundleAt("/Users/me/plug-ins/B.vst3")});
  EXPECT_EQ(batch.installed(), 1u);
  EXPECT_EQ(batch.failed(), 1u);
  EXPECT_EQ(batch.skipped(), 0u);
  EXPECT_EQ(told(batch.reports[0]), "failed: ditto failed: ditto: A: Input/output error\n");
}

// Tools.

TEST_F(PluginInstalling, aMissingWrapperIsNamedAndTheCopyHasBeenMade) {
  scene::makeFolder(folder);
  scene::removeTool(gantrix);
  EXPECT_EQ(told(install()), "failed: ln failed: The file “gantrix” doesn’t exist.");
  expectLinkUntouched();
  EXPECT_EQ(log_.back(), "copied\t" + external);
}

TEST_F(PluginInstalling, theWrapperOfTheUserServesWhereThereIsNoOther) {
  scene::makeFolder("/Users/me/.codex/skills/gantrix");
  fs::rename(gantrix, "/Users/me/.codex/skills/gantrix/gantrix");
  EXPECT_EQ(told(install()), "installed: ok");
}

TEST_F(PluginInstalling, aMissingOrFailingDittoIsToldAndNothingIsLinked) {
  order("ditto", "fail 3 ditto: no\\space");
  EXPECT_EQ(told(install()), "failed: ditto failed: ditto: no\\space\n");
  scene::removeTool("/usr/bin/ditto");
  EXPECT_EQ(told(install()), "failed: ditto failed: The file “ditto” doesn’t exist.");
  EXPECT_FALSE(scene::exists(systemLink));
  EXPECT_EQ(log_.size(), 1u);
}

TEST_F(PluginInstalling, aFolderOfTheSystemThatCannotBeMadeIsTold) {
  order("gantrix", "on mkdir fail 1 mkdir: no");
  EXPECT_EQ(told(install()), "failed: mkdir " + folder + " failed: mkdir: no\n");
  expectLinkUntouched();
}

TEST_F(PluginInstalling, aBundleOfTheSystemThatCannotBeRemovedStays) {
  makeBundle(systemLink, "native");
  order("gantrix", "on rm fail 1 rm: no");
  EXPECT_EQ(told(install()), "failed: rm " + systemLink + " failed: rm: no\n");
  EXPECT_EQ(scene::read(systemLink + "/Contents/MacOS/code"), "native");
}

TEST_F(PluginInstalling, aLinkThatCannotBeMadeIsTold) {
  order("gantrix", "on ln fail 1 ln: no");
  EXPECT_EQ(told(install()), "failed: ln failed: ln: no\n");
  expectLinkUntouched();
}

TEST_F(PluginInstalling, aWrapperThatOnlySaysItMadeTheLinkIsFoundOut) {
  scene::makeFolder(folder);
  scene::replaceTool(gantrix, "#!/bin/sh\nexit 0\n");
  EXPECT_EQ(told(install()), "failed: symlink does not resolve");
  scene::replaceTool(gantrix, "#!/bin/sh\n[ $1 = ln ] || exec \"$@\"\nexec ln -s /Users/me \"$4\"\n");
  EXPECT_EQ(told(install()), "failed: symlink does not resolve");
}

TEST_F(PluginInstalling, aBundleThatComesBackMeanwhileGetsNoLinkInside) {
  makeBundle(systemLink, "native");
  scene::replaceTool(gantrix, "#!/bin/sh\n\"$@\"\nmkdir -p " + systemLink + "\n");
  EXPECT_EQ(told(install()), "failed: rm " + systemLink + " failed: “" + systemLink + "” is still there.");
  EXPECT_TRUE(fs::is_empty(systemLink));
}

TEST_F(PluginInstalling, aWrapperThatOnlySaysItRemovedSomethingIsFoundOut) {
  scene::replaceTool(gantrix, "#!/bin/sh\nexit 0\n");
  makeBundle(systemLink, "native");
  EXPECT_EQ(told(install()), "failed: rm " + systemLink + " failed: “" + systemLink + "” is still there.");
  EXPECT_EQ(scene::read(systemLink + "/Contents/MacOS/code"), "native");
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (!operation.starts_with("remove ")) return {};
    return CocoaError::fromCode(CocoaError::Operation::remove, CocoaErrorCode::fileWriteNoPermission,
                                Path(external));
  });
  makeBundle(external, "old");
  EXPECT_EQ(told(install(bundleAt(source), gated.platform())),
            "failed: rm " + external + " failed: “" + external + "” is still there.");
  EXPECT_EQ(scene::read(external + "/Contents/MacOS/code"), "old") << "and nothing was merged with it";
}

TEST_F(PluginInstalling, whatTookAnothersPlaceMeanwhileStays) {
  for (const bool wasThere : {false, true}) {
    fs::remove_all(systemLink);
    if (wasThere) scene::link(systemLink, "/nowhere");
    scene::replaceTool("/usr/bin/codesign",
                       "#!/bin/sh\nrm -rf " + systemLink + "; mkdir -p " + systemLink + "/new\n");
    options_.adhocCodesign = true;
    EXPECT_EQ(told(install()), "failed: “" + systemLink + "” was replaced meanwhile.");
    EXPECT_TRUE(scene::exists(systemLink + "/new"));
  }
}

TEST_F(PluginInstalling, attributesAndSignaturesMayFail) {
  options_ = {.overwrite = true, .stripQuarantine = true, .adhocCodesign = true};
  order("xattr", "flood 2\nfail 1 no");
  order("codesign", "fail 1 no");
  EXPECT_EQ(told(install()), "installed: ok");
  scene::removeTool("/usr/bin/xattr");
  scene::removeTool("/usr/bin/codesign");
  EXPECT_EQ(told(install()), "installed: ok");
}

TEST_F(PluginInstalling, theWrapperRemovesTheCopyWhereTheUserCannot) {
  makeBundle(external, "old");
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (!operation.starts_with("remove ")) return {};
    return CocoaError::fromCode(CocoaError::Operation::remove, CocoaErrorCode::fileWriteNoPermission,
                                Path(external));
  });
  EXPECT_EQ(told(install(bundleAt(source), gated.platform())), "installed: ok");
  expectInstalled();
  order("gantrix", "on rm fail 1 rm: no");
  makeBundle(external, "old");
  EXPECT_EQ(told(install(bundleAt(source), gated.platform())),
            "failed: rm " + external + " failed: rm: no\n");
  EXPECT_EQ(scene::read(external + "/Contents/MacOS/code"), "old");
}

// What counts as a copy.

TEST_F(PluginInstalling, aCopyThatIsNotWholeReplacesNothing) {
  makeBundle(systemLink, "native");
  scene::replaceTool("/usr/bin/ditto", "#!/bin/sh\nmkdir -p \"$3/Contents/MacOS\"\n");
  const std::string message = told(install());
  EXPECT_TRUE(message.starts_with("failed: Verification failed: ")) << message;
  EXPECT_EQ(scene::read(systemLink + "/Contents/MacOS/code"), "native");
  EXPECT_EQ(log_.size(), 1u) << "and nobody says that it was copied";
}

TEST_F(PluginInstalling, aCopyThatCannotBeWrittenOutReplacesNothing) {
  makeBundle(systemLink, "native");
  for (const int nth : {1, 2}) {
    int flushes = 0;
    GatedPlatform gated([&](const std::string& operation) -> Result<void> {
      if (operation != "flush " + external || ++flushes != nth) return {};
      return PlatformError("test", 1, "The drive broke.");
    });
    EXPECT_EQ(told(install(bundleAt(source), gated.platform())), "failed: The drive broke.") << nth;
    EXPECT_EQ(scene::read(systemLink + "/Contents/MacOS/code"), "native") << nth;
  }
}

TEST_F(PluginInstalling, aLinkThatCannotBeWrittenOutIsNoSuccess) {
  GatedPlatform gated([](const std::string& operation) -> Result<void> {
    if (operation != "flush " + folder) return {};
    return PlatformError("test", 1, "The disk broke.");
  });
  EXPECT_EQ(told(install(bundleAt(source), gated.platform())), "failed: The disk broke.");
}

}  // namespace
}  // namespace quarn
