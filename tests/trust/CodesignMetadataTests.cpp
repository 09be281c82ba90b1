#include <gtest/gtest.h>

#include "QuarnCore/trust/CodesignMetadata.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string bundle = "/Applications/Foo.app";

struct Metadata : testing::Test {
  doubles::FakeTools tools;
  doubles::FakeTools::Answer& codesign = tools.answers["/usr/bin/codesign "];
  doubles::FakeTools::Answer& spctl = tools.answers["/usr/sbin/spctl "];

  std::string team(const std::string& error) {
    codesign = {0, "", error};
    return CodesignMetadata::teamName(tools.platform(), Path(bundle));
  }
  std::string notarization(const std::string& error, int status = 0) {
    spctl = {status, "", error};
    return CodesignMetadata::notarizationStatus(tools.platform(), Path(bundle));
  }
};

TEST_F(Metadata, theToolsGetTheseWords) {
  using Command = std::vector<std::string>;
  for (const std::string odd : {"/Applications/Foo.app", "/Applications/a b \"c\"\n.app", "/Applications/-a",
                                "/Applications/Cafe\u0301.app"}) {
    tools.calls.clear();
    CodesignMetadata::teamName(tools.platform(), Path(odd));
    CodesignMetadata::notarizationStatus(tools.platform(), Path(odd));
    EXPECT_EQ(tools.calls, (std::vector<Command>{{"/usr/bin/codesign", "-dvv", odd},
                                                 {"/usr/sbin/spctl", "-a", "-vv", odd}}));
  }
}

TEST_F(Metadata, theTeamIsNamedUpToItsIdentifier) {
  EXPECT_EQ(team("Executable=/x\nAuthority=Developer ID Application: Example Ltd. (ABCDE12345)\n"
                 "Authority=Developer ID Certification Authority\nAuthority=Apple Root CA\n"),
            "Example Ltd.");
  EXPECT_EQ(team("Authority=Developer ID Application:  \u00A0Caf\u00E9 \t"), "Caf\u00E9") << "without one";
  EXPECT_EQ(team("Authority=Developer ID Application: A (B) (C)"), "A");
  EXPECT_EQ(team("Authority=Developer ID Application: (ABCDE12345)"), "");
}

TEST_F(Metadata, theStoreIsApple) {
  EXPECT_EQ(team("Authority=Apple Mac OS Application Signing\nAuthority=Apple Root CA\n"),
            "Apple (Mac App Store)");
  EXPECT_EQ(team("Authority=Apple Mac OS Application Signing, too"), "Apple (Mac App Store)");
}

TEST_F(Metadata, theFirstOfTheTwoLinesDecides) {
  EXPECT_EQ(team("Authority=Apple Mac OS Application Signing\nAuthority=Developer ID Application: A (B)\n"),
            "Apple (Mac App Store)");
  EXPECT_EQ(team("Authority=Developer ID Application: A (B)\nAuthority=Apple Mac OS Application Signing\n"),
            "A");
}

TEST_F(Metadata, withoutSuchALineItIsUnsigned) {
  for (const std::string text :
       {"", "x: code object is not signed at all\n", "Signature=adhoc\nTeamIdentifier=not set\n",
        " Authority=Developer ID Application: A (B)\n", "Authority=Developer ID Installer: A (B)\n",
        "authority=developer id application: A\n", "Authority=Developer ID Application:A\n"}) {
    EXPECT_EQ(team(text), "Unsigned / Ad-hoc") << text;
  }
  codesign = {0, "Authority=Developer ID Application: A (B)\n", ""};
  EXPECT_EQ(CodesignMetadata::teamName(tools.platform(), Path(bundle)), "Unsigned / Ad-hoc")
      << "standard output doesn't count";
}

TEST_F(Metadata, theVerdictIsTakenFromTheFirstWordsThatOccur) {
  EXPECT_EQ(notarization(bundle + ": accepted\nsource=Notarized Developer ID\norigin=x\n"), "Notarized");
  EXPECT_EQ(notarization(bundle + ": rejected\nsource=Notarized Developer ID\n", 3), "Notarized");
  EXPECT_EQ(notarization(bundle + ": accepted\nsource=Mac App Store\n"), "Mac App Store");
  EXPECT_EQ(notarization("source=Mac App Store\nsource=Notarized Developer ID\n"), "Notarized");
  EXPECT_EQ(notarization(bundle + ": rejected\nsource=Unnotarized Developer ID\n", 3), "Not signed");
  EXPECT_EQ(notarization("accepted, no, rejected", 3), "Not signed");
  EXPECT_EQ(notarization(bundle + ": accepted\nsource=Apple System\n"), "Accepted");
}

TEST_F(Metadata, otherWordsAreUnknown) {
  for (const std::string text : {"", "x: a sealed resource is missing or invalid\n",
                                 "x: CSSMERR_TP_CERT_REVOKED\n", "Rejected", "ACCEPTED"}) {
    EXPECT_EQ(notarization(text, 1), "Unknown") << text;
  }
  spctl = {0, "accepted", ""};
  EXPECT_EQ(CodesignMetadata::notarizationStatus(tools.platform(), Path(bundle)), "Unknown")
      << "standard output doesn't count";
}

TEST_F(Metadata, theToolsHaveNoTimeLimit) {
  codesign.hangs = spctl.hangs = true;
  CodesignMetadata::teamName(tools.platform(), Path(bundle));
  CodesignMetadata::notarizationStatus(tools.platform(), Path(bundle));
  EXPECT_EQ(tools.secondsWaited(), 0) << "nobody looked at the clock";
}

TEST_F(Metadata, withoutTheToolsNothingIsKnown) {
  tools.answers.clear();
  EXPECT_EQ(CodesignMetadata::teamName(tools.platform(), Path(bundle)), "Unsigned / Ad-hoc");
  EXPECT_EQ(CodesignMetadata::notarizationStatus(tools.platform(), Path(bundle)), "Unknown");
}

TEST(RealMetadata, aFloodIsReadAndWhatIsNoTextOrIsCutShortIsNot) {
  const auto team = [](const std::string& text) {
    scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\n" + text + "\n");
    return CodesignMetadata::teamName(hostPlatform(), Path(bundle));
  };
  const std::string authority = "echo 'Authority=Developer ID Application: A (B)' >&2\n";
  EXPECT_EQ(team("head -c 8000000 /dev/zero\nyes | head -c 8000000 >&2\n" + authority), "A");
  EXPECT_EQ(team(authority + "printf '\\377' >&2"), "Unsigned / Ad-hoc");
  EXPECT_EQ(team("kill -KILL $$\n" + authority), "Unsigned / Ad-hoc");
  EXPECT_EQ(team(authority + "kill -KILL $$"), "A") << "what it wrote before counts";
}

}  // namespace
}  // namespace quarn
