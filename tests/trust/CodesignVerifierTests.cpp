#include <gtest/gtest.h>

#include "QuarnCore/trust/CodesignVerifier.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Command = std::vector<std::string>;

const std::string bundle = "/Applications/Foo.app";
const std::string processing = "Processing: /Applications/Foo.app\n";

/// A bundle that is signed and stapled, and all is well with it.
struct VerifyingCodesign : testing::Test {
  doubles::FakeTools tools;
  doubles::FakeTools::Answer& signing = tools.answers["/usr/bin/codesign -dv "];
  doubles::FakeTools::Answer& verifying = tools.answers["/usr/bin/codesign --verify "];
  doubles::FakeTools::Answer& stapler = tools.answers["/usr/bin/xcrun stapler "];

  VerifyingCodesign() {
    signing.error = "Executable=/Applications/Foo.app/Contents/MacOS/Foo\nIdentifier=com.example.foo\n";
    stapler.output = processing + "The validate action worked!\n";
  }
  CodesignVerifier::Result verified(const std::string& path = bundle) {
    return CodesignVerifier::verify(tools.platform(), Path(path));
  }
};

TEST_F(VerifyingCodesign, aSignedAndStapledBundlePasses) {
  EXPECT_EQ(verified(), (CodesignVerifier::Result{true, true, true, "",
                                                  "Processing: /Applications/Foo.app\n"
                                                  "The validate action worked!"}));
  EXPECT_TRUE(verified().passed());
}

TEST_F(VerifyingCodesign, theToolsGetTheseWordsInThisOrder) {
  for (const std::string odd :
       {"/Applications/Foo.app", "/Applications/a b \"c\" 'd' $e;*.app", "/Applications/line\nfeed.app",
        "/Applications/-dv.app", "/Applications/Caf\u00E9.app", "/Applications/Cafe\u0301.app"}) {
    tools.calls.clear();
    verified(odd);
    EXPECT_EQ(tools.calls, (std::vector<Command>{{"/usr/bin/codesign", "-dv", odd},
                                                 {"/usr/bin/codesign", "--verify", "--deep", "--strict", odd},
                                                 {"/usr/bin/xcrun", "stapler", "validate", odd}}));
  }
}

TEST_F(VerifyingCodesign, aBrokenSealIsToldTrimmedWithStandardErrorFirst) {
  verifying = {1, " out\n\n",
               "\n" + bundle + ": a sealed resource is missing or invalid\nIn subcomponent: x\n"};
  const auto result = verified();
  EXPECT_TRUE(result.isSigned);
  EXPECT_FALSE(result.codesignOK);
  EXPECT_EQ(result.codesignDetail,
            bundle + ": a sealed resource is missing or invalid\nIn subcomponent: x\n out");
  EXPECT_FALSE(result.passed());
}

TEST_F(VerifyingCodesign, anUnsignedBundleIsExaminedAllTheSame) {
  signing = {1, "", bundle + ": code object is not signed at all\n"};
  verifying = {1, "", bundle + ": code object is not signed at all\n"};
  const auto result = verified();
  EXPECT_FALSE(result.isSigned);
  EXPECT_FALSE(result.codesignOK);
  EXPECT_EQ(tools.calls.size(), 3u);
}

TEST_F(VerifyingCodesign, whatOnlyTheLinkerSignedIsSignedAndBroken) {
  signing.error = "CodeDirectory v=20400 size=1 flags=0x20002(adhoc,linker-signed)\nSignature=adhoc\n";
  verifying = {1, "", bundle + ": code has no resources but signature indicates they must be present\n"};
  EXPECT_TRUE(verified().isSigned);
  EXPECT_FALSE(verified().codesignOK);
}

TEST_F(VerifyingCodesign, aBundleWithoutATicketHasNoneToValidate) {
  for (const std::string none :
       {"Foo.app does not have a ticket stapled to it.\n", "x does not contain y\n"}) {
    for (const int status : {0, 65}) {
      stapler = {status, processing + none, ""};
      EXPECT_EQ(verified().staplerOK, std::nullopt) << none << status;
      EXPECT_TRUE(verified().passed());
      stapler = {status, processing, none};
      EXPECT_EQ(verified().staplerOK, std::nullopt) << "on standard error: " << none << status;
    }
  }
}

TEST_F(VerifyingCodesign, theProcessingLineAloneSaysNothingOfATicket) {
  for (const std::string& alone : {processing, "\n  \t\n  " + processing + " \u00A0\n\r\n"}) {
    stapler = {66, alone, ""};
    EXPECT_EQ(verified().staplerOK, std::nullopt) << alone;
  }
  EXPECT_TRUE(verified().passed());
  verifying.status = 1;
  EXPECT_FALSE(verified().passed()) << "now codesign alone decides";
}

TEST_F(VerifyingCodesign, theProcessingLineAloneIsASuccessWithStatus0) {
  stapler = {0, processing, ""};
  EXPECT_EQ(verified().staplerOK, true);
}

TEST_F(VerifyingCodesign, anythingElseThanOneProcessingLineIsAFailure) {
  const std::vector<std::string> outputs = {
      "",
      "xcrun: error: unable to find utility \"stapler\", not a developer tool or in PATH\n",
      processing + "Stapler is incapable of working with Document files.\n",
      processing + processing,
      "not " + processing,
      processing +
          "CloudKit's response is inconsistent with expectations: (null)\n"
          "The validate action failed! Error 68.\n"};
  for (const std::string& output : outputs) {
    stapler = {66, output, ""};
    EXPECT_EQ(verified().staplerOK, false) << output;
    EXPECT_FALSE(verified().passed());
  }
}

TEST_F(VerifyingCodesign, aVerificationThatHangsCountsAsNotExamined) {
  const CodesignVerifier::Result notExamined{false, true, std::nullopt, "verification timed out", ""};
  for (auto* hanging : {&verifying, &stapler}) {
    const double before = tools.secondsWaited();
    hanging->hangs = true;
    verifying.status = 1;
    EXPECT_EQ(verified(), notExamined);
    EXPECT_NEAR(tools.secondsWaited() - before, 20, 0.051);
    hanging->hangs = false;
  }
  EXPECT_TRUE(notExamined.passed());
}

TEST_F(VerifyingCodesign, aLookForTheSignatureThatHangsFindsNoneAndTheRestIsExamined) {
  signing.hangs = true;
  verifying = {1, "", "broken\n"};
  EXPECT_EQ(verified(), (CodesignVerifier::Result{false, false, true, "broken",
                                                  "Processing: /Applications/Foo.app\n"
                                                  "The validate action worked!"}));
  EXPECT_NEAR(tools.secondsWaited(), 20, 0.051);
}

TEST_F(VerifyingCodesign, withoutTheToolsNothingIsSigned) {
  tools.answers.clear();
  EXPECT_EQ(verified(), (CodesignVerifier::Result{false, false, false, "The file “codesign” doesn’t exist.",
                                                  "The file “xcrun” doesn’t exist."}));
}

void codesign(const std::string& script) {
  scene::replaceTool("/usr/bin/codesign", "#!/bin/sh\n" + script + "\n");
  scene::replaceTool("/usr/bin/xcrun", "#!/bin/sh\necho \"Processing: $3\"\nexit 66\n");
}

CodesignVerifier::Result reallyVerified() {
  return CodesignVerifier::verify(hostPlatform(), Path(bundle));
}

TEST(RealCodesign, aFloodIsReadToItsEnd) {
  codesign("[ $1 = -dv ] || { head -c 8000000 /dev/zero | tr '\\0' x >&2; exit 1; }");
  const auto result = reallyVerified();
  EXPECT_TRUE(result.isSigned);
  EXPECT_FALSE(result.codesignOK);
  EXPECT_EQ(result.codesignDetail, std::string(8'000'000, 'x'));
}

TEST(RealCodesign, aToolKilledByASignalHasFailed) {
  codesign("[ $1 = -dv ] || kill -KILL $$");
  const auto result = reallyVerified();
  EXPECT_TRUE(result.isSigned);
  EXPECT_FALSE(result.codesignOK);
  EXPECT_EQ(result.codesignDetail, "");
  codesign("kill -TERM $$");
  EXPECT_FALSE(reallyVerified().isSigned);
}

TEST(RealCodesign, whatIsNotTextIsNotTold) {
  codesign("[ $1 = -dv ] || { printf 'out'; printf 'bad \\377' >&2; exit 1; }");
  EXPECT_EQ(reallyVerified().codesignDetail, "out");
}

TEST(RealCodesign, anExitWith127IsAFailureLikeAnyOther) {
  codesign("[ $1 = -dv ] || exit 127");
  EXPECT_TRUE(reallyVerified().isSigned);
  EXPECT_FALSE(reallyVerified().codesignOK);
}

}  // namespace
}  // namespace quarn
