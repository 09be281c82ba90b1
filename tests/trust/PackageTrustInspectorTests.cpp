#include <gtest/gtest.h>

#include "QuarnCore/trust/TrustSummary.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Packages.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Lines = std::vector<std::string>;

const std::string package = "/Users/me/Foo.pkg";

struct PackageTrust : testing::Test {
  doubles::FakeTools tools;
  doubles::FakeTools::Answer& pkgutil = tools.answers["/usr/sbin/pkgutil "];
  doubles::FakeTools::Answer& xar = tools.answers["/usr/bin/xar "];

  TrustSummary inspected(const std::string& path = package) {
    return PackageTrustInspector::inspect(tools.platform(), Path(path));
  }
  std::string status(const std::string& output, int exitStatus = 0) {
    pkgutil = {exitStatus, output, ""};
    return inspected().status;
  }
  bool hasScripts(const std::string& entries) {
    xar.output = entries;
    return inspected().hasScripts;
  }
  bool isPrivileged(const std::string& entries) {
    xar.output = entries;
    return inspected().hasPrivilegedPayload;
  }
};

TEST_F(PackageTrust, theToolsGetTheseWordsInThisOrder) {
  for (const std::string odd :
       {"/Users/me/Foo.pkg", "/Users/me/a b \"c\" 'd' $e;*.pkg", "/Users/me/line\nfeed.pkg", "/Users/me/-tf",
        "/Users/me/Caf\u00E9.pkg", "/Users/me/Cafe\u0301.pkg"}) {
    tools.calls.clear();
    inspected(odd);
    EXPECT_EQ(tools.calls, (std::vector<Lines>{{"/usr/sbin/pkgutil", "--check-signature", odd},
                                               {"/usr/bin/xar", "-tf", odd}}));
  }
}

TEST_F(PackageTrust, aPackageWithoutASignatureIsUntrustedAndTheLineSaysSo) {
  pkgutil = {1, "Package \"Foo\":\n\n   Status: no signature\n", ""};
  EXPECT_EQ(inspected(),
            (TrustSummary{"untrusted", {"Package \"Foo\":", "   Status: no signature"}, false, false}));
}

TEST_F(PackageTrust, aSignedOneIsTrustedWhateverTheExitStatus) {
  for (const std::string line :
       {"   Status: signed by a developer certificate issued by Apple for distribution",
        "Status: signed by a developer certificate", "Status: signed Apple Software",
        "Status: signed by a certificate that has since expired", "STATUS: SIGNED", "éstatus: Signedé"}) {
    EXPECT_EQ(status(line + "\n", 1), "trusted") << line;
  }
}

TEST_F(PackageTrust, theLettersOfTrustedAreEnough) {
  for (const std::string line : {"untrusted certificate", "   Status: signed by untrusted certificate",
                                 "UNTRUSTED", "Signed with a trusted timestamp on: 2026-09-21 09:07:44 +0000",
                                 "   Notarization: trusted by the Apple notary service"}) {
    EXPECT_EQ(status("Package \"Foo\":\n" + line + "\n", 1), "trusted") << line;
  }
}

TEST_F(PackageTrust, otherWordsAreNot) {
  for (const std::string line :
       {"", "\n\n", "   Status: package is invalid (checksum did not verify)", "Status:signed",
        "Status:  signed", "Status: unsigned", "signed", "trust ed", "Status:\nsigned", "trus\nted"}) {
    EXPECT_EQ(status(line), "untrusted") << line;
  }
}

TEST_F(PackageTrust, standardErrorFollowsStandardOutputAndEmptyLinesAreLeftOut) {
  pkgutil = {1, "\na\n\n b \n", "c\n\nd"};
  EXPECT_EQ(inspected().details, (Lines{"a", " b ", "c", "d"}));
  pkgutil = {1, "Status: sig", "ned"};
  EXPECT_EQ(inspected().details, (Lines{"Status: signed"})) << "nothing comes between the two";
  EXPECT_EQ(inspected().status, "trusted");
}

TEST_F(PackageTrust, anythingInAFolderOfScriptsIsAScript) {
  for (const std::string entry : {"Scripts", "Foo.pkg/Scripts", "Foo.pkg/Scripts/postinstall", "/Scripts"}) {
    EXPECT_TRUE(hasScripts("Bom\n" + entry + "\nPayload\n")) << entry;
  }
  for (const std::string entry : {"", "scripts", "Scripts/postinstall", "MyScripts", "Foo.pkg/MyScripts",
                                  "Scripts.txt", "Foo/Scripts2/x"}) {
    EXPECT_FALSE(hasScripts("Bom\n" + entry + "\nPayload\n")) << entry;
  }
}

TEST_F(PackageTrust, aNameOfAPrivilegedFolderIsAPrivilegedPayload) {
  for (const std::string entry :
       {"Library/LaunchDaemons", "x/Library/PrivilegedHelperTools/y", "System/Library/Extensions",
        "MyLibrary/SystemExtensionsOfMine", "Library/LaunchDaemons/com.example.plist"}) {
    EXPECT_TRUE(isPrivileged("Bom\nPayload\n" + entry + "\n")) << entry;
  }
  for (const std::string entry : {"", "Library/launchdaemons", "library/Extensions", "Library/LaunchAgents",
                                  "Library/Application Support", "Library\n/Extensions"}) {
    EXPECT_FALSE(isPrivileged("Bom\nPayload\n" + entry + "\n")) << entry;
  }
}

TEST_F(PackageTrust, aTableOfContentsThatFailsIsEmpty) {
  const std::string entries = "Scripts\nLibrary/Extensions\n";
  EXPECT_TRUE(hasScripts(entries));
  xar = {1, entries, "Error opening xar archive: /Users/me/Foo.pkg\n"};
  EXPECT_FALSE(inspected().hasScripts);
  EXPECT_FALSE(inspected().hasPrivilegedPayload);
  xar = {0, "", entries};
  EXPECT_FALSE(inspected().hasScripts) << "standard error is no table";
}

TEST_F(PackageTrust, aTableOfContentsThatTakesTooLongIsEmpty) {
  xar = {.output = "Scripts\n", .hangs = true};
  EXPECT_FALSE(inspected().hasScripts);
  EXPECT_NEAR(tools.secondsWaited(), 30, 0.051);
}

TEST_F(PackageTrust, whatPkgutilPrintedUntilItsTimeWasUpCounts) {
  pkgutil = {.output = "Status: signed by x\n", .hangs = true};
  EXPECT_EQ(inspected().status, "trusted");
  EXPECT_NEAR(tools.secondsWaited(), 15, 0.051);
}

TEST_F(PackageTrust, withoutTheToolsAPackageIsUntrusted) {
  tools.answers.clear();
  EXPECT_EQ(inspected(), (TrustSummary{"untrusted", {"The file “pkgutil” doesn’t exist."}, false, false}));
}

TrustSummary reallyInspected(const std::string& pkgutil, const std::string& xar) {
  scene::replaceTool("/usr/sbin/pkgutil", "#!/bin/sh\n" + pkgutil + "\n");
  scene::replaceTool("/usr/bin/xar", "#!/bin/sh\n" + xar + "\n");
  return PackageTrustInspector::inspect(hostPlatform(), Path(package));
}

TEST(RealPkgutil, floodsAreReadToTheirEnd) {
  // 99 letters and a line feed.
  const std::string flood = "yes \"$(printf %099d 0)\" | head -c 8000000; ";
  const auto summary = reallyInspected(flood + "echo Status: signed by x >&2", flood + "echo Scripts");
  EXPECT_EQ(summary.details.size(), 80'001u);
  EXPECT_EQ(summary.status, "trusted");
  EXPECT_TRUE(summary.hasScripts);
}

TEST(RealPkgutil, toolsThatAreKilledOrPrintNoTextYieldTheWeakestAnswer) {
  const TrustSummary nothing{"untrusted", {}, false, false};
  EXPECT_EQ(reallyInspected("kill -KILL $$", "echo Scripts; kill -KILL $$"), nothing);
  EXPECT_EQ(reallyInspected("printf 'Status: signed \\377'", "printf 'Scripts\\n\\377'"), nothing);
}

/// Packages that ordinary tools made, looked at with the tools that the room has for a Mac's.
struct RealPackage : testing::Test {
  const std::string path = "/tmp/A package.pkg";

  void SetUp() override {
    if (!packages::canBeMade()) GTEST_SKIP() << "there is no bsdtar";
    scene::makeApp("/tmp/payload/Applications/Foo.app");
    scene::write("/tmp/scripts/postinstall", "#!/bin/sh\n");
  }
  void make(const std::string& scripts = "") const {
    packages::component(path, {.payload = "/tmp/payload", .scripts = scripts});
  }
  TrustSummary inspected() const { return PackageTrustInspector::inspect(hostPlatform(), Path(path)); }
};

const std::string heading = "Package \"A package.pkg\":";

TEST_F(RealPackage, thatNobodySignedIsUntrusted) {
  make();
  EXPECT_EQ(inspected(), (TrustSummary{"untrusted", {heading, "   Status: no signature"}, false, false}));
}

TEST_F(RealPackage, thatSomebodySignedIsTrustedByWhateverCertificate) {
  const std::pair<std::string, std::string> lines[] = {
      {"notarized", "by a developer certificate issued by Apple for distribution"},
      {"developer-id", "by a developer certificate issued by Apple for distribution"},
      {"apple", "Apple Software"},
      {"app-store", "by a certificate trusted by macOS"},
      {"untrusted", "by untrusted certificate"},
      {"expired", "by a certificate that has since expired"},
  };
  make();
  for (const auto& [kind, line] : lines) {
    packages::sign(path, kind);
    const TrustSummary found = inspected();
    EXPECT_EQ(found.status, "trusted") << kind;
    ASSERT_GT(found.details.size(), 2u) << kind;
    EXPECT_EQ(found.details[1], "   Status: signed " + line);
  }
}

TEST_F(RealPackage, thatGotAnotherPayloadAfterItWasSignedIsUntrusted) {
  make();
  packages::sign(path);
  const std::string bytes = scene::read(path);
  const std::string signature = bytes.substr(bytes.rfind('\n', bytes.size() - 2));
  scene::write("/tmp/payload/Applications/Foo.app/Contents/MacOS/Other", "other");
  make();
  scene::write(path, scene::read(path) + signature);
  EXPECT_EQ(
      inspected(),
      (TrustSummary{
          "untrusted", {heading, "   Status: package is invalid (checksum did not verify)"}, false, false}));
}

TEST_F(RealPackage, tellsByItsTableOfContentsWhetherItHasScripts) {
  make();
  EXPECT_FALSE(inspected().hasScripts);
  make("/tmp/scripts");
  EXPECT_TRUE(inspected().hasScripts);
  packages::product(path, {{.payload = "/tmp/payload", .name = "One.pkg"},
                           {.identifier = "com.example.two", .scripts = "/tmp/scripts", .name = "Two.pkg"}});
  EXPECT_TRUE(inspected().hasScripts);
}

TEST_F(RealPackage, hidesWhatItsPayloadHoldsUnlessAComponentIsNamedSo) {
  scene::write("/tmp/payload/Library/LaunchDaemons/com.example.plist", "");
  make();
  EXPECT_FALSE(inspected().hasPrivilegedPayload) << "the payload is one member of the archive";
  packages::product(path, {{.payload = "/tmp/payload", .name = "Library/Extensions.pkg"}});
  EXPECT_TRUE(inspected().hasPrivilegedPayload);
}

}  // namespace
}  // namespace quarn
