#include <gtest/gtest.h>

#include "QuarnCore/health/SignatureBrokenDetector.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

const std::string link = "/Applications/Foo.app";
const std::string bundle = "/Volumes/X9/ExternalQuarn/Apps/Foo.app";

/// A link to a signed and stapled bundle.
struct SignatureBroken : testing::Test {
  doubles::FakeTools tools;
  doubles::FakeTools::Answer& signing = tools.answers["/usr/bin/codesign -dv "];
  doubles::FakeTools::Answer& verifying = tools.answers["/usr/bin/codesign --verify "];
  doubles::FakeTools::Answer& stapler = tools.answers["/usr/bin/xcrun stapler "];

  SignatureBroken() { scene::makeFolder(bundle); }

  std::vector<HealthIssue> found(const std::string& location = link, const std::string& target = bundle) {
    return SignatureBrokenDetector::detect(tools.platform(), {{Path(location), Path(target)}});
  }
  std::string detail() {
    const auto issues = found();
    return issues.size() == 1 ? issues.front().detail : std::to_string(issues.size()) + " issues";
  }
};

TEST_F(SignatureBroken, aGoodSignatureIsNoIssueWithATicketOrWithout) {
  EXPECT_TRUE(found().empty());
  stapler = {65, "Processing: x\nFoo.app does not have a ticket stapled to it.\n", ""};
  EXPECT_TRUE(found().empty());
}

TEST_F(SignatureBroken, aBrokenOneIsToldOfTheLinkAndTheBundle) {
  verifying = {1, "", bundle + ": a sealed resource is missing or invalid\nIn subcomponent: x\n"};
  EXPECT_EQ(found(),
            (std::vector<HealthIssue>{
                {HealthIssue::Kind::signatureBroken, Path(link), Path(bundle),
                 "codesign verify failed. " + bundle + ": a sealed resource is missing or invalid", 0}}));
}

TEST_F(SignatureBroken, aFailureWithoutWordsHasTheOpeningAlone) {
  verifying = {1, " \n", "\n"};
  EXPECT_EQ(detail(), "codesign verify failed.");
}

TEST_F(SignatureBroken, aStaplerThatFailsWithoutWordsHasTheOpeningAlone) {
  stapler = {72, "", ""};
  EXPECT_EQ(detail(), "codesign verify failed.");
}

TEST_F(SignatureBroken, aStaplerThatFailsIsQuotedBehindItsName) {
  stapler = {68, "Processing: " + bundle + "\nThe validate action failed! Error 68.\n",
             "CloudKit's response is inconsistent with expectations: (null)\n"};
  EXPECT_EQ(detail(),
            "codesign verify failed. stapler: CloudKit's response is inconsistent with expectations: (null)");
}

TEST_F(SignatureBroken, bothAreQuotedInThisOrder) {
  verifying = {1, "", "\nseal\r\nmore"};
  stapler = {1, "no ticket\nmore", ""};
  EXPECT_EQ(detail(), "codesign verify failed. seal stapler: no ticket");
}

TEST_F(SignatureBroken, whatAToolPrintsThatSucceedsIsNotQuoted) {
  verifying = {0, "", "all is well"};
  stapler = {1, "no ticket", ""};
  EXPECT_EQ(detail(), "codesign verify failed. stapler: no ticket");
  verifying = {1, "", "seal"};
  stapler = {0, "worked", ""};
  EXPECT_EQ(detail(), "codesign verify failed. seal");
}

TEST_F(SignatureBroken, anUnsignedBundleIsNoIssueWhateverFails) {
  signing.status = 1;
  verifying = {1, "", bundle + ": code object is not signed at all\n"};
  stapler = {66, "no", ""};
  EXPECT_TRUE(found().empty());
}

TEST_F(SignatureBroken, aToolThatHangsIsNoIssue) {
  verifying = {.status = 1, .error = "broken", .hangs = true};
  EXPECT_TRUE(found().empty());
  EXPECT_NEAR(tools.secondsWaited(), 20, 0.051);
}

TEST_F(SignatureBroken, withoutTheToolsThereIsNoIssue) {
  tools.answers.clear();
  EXPECT_TRUE(found().empty());
}

TEST_F(SignatureBroken, whatIsNoApplicationOrIsNotThereIsNotVerified) {
  verifying.status = 1;
  const std::string folder = "/Volumes/X9/ExternalQuarn/Apps/";
  for (const std::string name : {"Foo", "Foo.APP", "Foo.plugin", "Foo.app.old", ".app"}) {
    scene::makeFolder(folder + name);
    EXPECT_TRUE(found(link, folder + name).empty()) << name;
  }
  scene::link(folder + "Dangling.app", folder + "nowhere");
  EXPECT_TRUE(found(link, folder + "Dangling.app").empty());
  EXPECT_TRUE(found(link, folder + "Missing.app").empty());
  EXPECT_TRUE(tools.calls.empty());
}

TEST_F(SignatureBroken, theNameOfTheLinkDoesNotMatter) {
  verifying.status = 1;
  EXPECT_EQ(found("/Applications/Foo").size(), 1u);
}

TEST_F(SignatureBroken, theIssuesHaveTheOrderOfTheLinks) {
  const std::string other = "/Volumes/X9/ExternalQuarn/Apps/Bar.app";
  scene::makeFolder(other);
  verifying.status = 1;
  tools.answers["/usr/bin/codesign --verify --deep --strict /Volumes/X9/ExternalQuarn/Apps/Good"] = {};
  scene::makeFolder("/Volumes/X9/ExternalQuarn/Apps/Good.app");
  const auto issues = SignatureBrokenDetector::detect(
      tools.platform(), {{Path("/Applications/B.app"), Path(bundle)},
                         {Path("/Applications/G.app"), Path("/Volumes/X9/ExternalQuarn/Apps/Good.app")},
                         {Path("/Applications/A.app"), Path(other)}});
  ASSERT_EQ(issues.size(), 2u);
  EXPECT_EQ(issues[0].location.text(), "/Applications/B.app");
  EXPECT_EQ(issues[1].location.text(), "/Applications/A.app");
  EXPECT_TRUE(SignatureBrokenDetector::detect(tools.platform(), {}).empty());
}

}  // namespace
}  // namespace quarn
