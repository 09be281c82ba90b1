// xcrun stapler validate, and spctl -a -vv: both judge by what codesign left and by the ticket.

#include "RoomCase.h"

namespace quarn::tests {

namespace {

const std::string identity = "Developer ID Application: Foo Ltd (TEAM12345)";

class Ticket : public RoomCase {
 protected:
  std::string validated(const std::string& preparation) const {
    return says("app A.app; codesign -s '" + identity +
                "' A.app; ticket() { echo t >A.app/Contents/CodeResources; }\n" + preparation +
                "\nstatus xcrun stapler validate A.app");
  }

  std::string judged(const std::string& preparation) const {
    return says("app A.app; ticket() { echo t >A.app/Contents/CodeResources; }\n" + preparation +
                "\nstatus spctl -a -vv A.app");
  }
};

INSTANTIATE_TEST_SUITE_P(Way, Ticket, everyWayOfScripts, nameOf);

const std::string processing = "Processing: A.app\n";

}  // namespace

TEST_P(Ticket, isValidWhereItIs) {
  EXPECT_EQ(validated("ticket"), processing + "The validate action worked!\n0\n");
  EXPECT_EQ(validated(""), processing + "A.app does not have a ticket stapled to it.\n65\n");
}

TEST_P(Ticket, isNamedByTheApplicationAndNotByItsFolder) {
  const Finished finished = play(
      "a='/Applications/My apps/Foo.app'; app \"$a\"; codesign -s - \"$a\"; status xcrun stapler validate "
      "\"$a\"");
  EXPECT_EQ(finished.out,
            "Processing: /Applications/My apps/Foo.app\nFoo.app does not have a ticket stapled to it.\n65\n");
  EXPECT_EQ(finished.err, "");
}

TEST_P(Ticket, cannotBeStapledToEverything) {
  EXPECT_EQ(validated("rm -r A.app/Contents/_CodeSignature"), processing + "66\n");
  EXPECT_EQ(validated("rm -r A.app; touch A.app"), processing + "66\n");
  EXPECT_EQ(says("app A.component; codesign -s - A.component; status xcrun stapler validate A.component"),
            "Processing: A.component\n66\n");
  EXPECT_EQ(validated("ticket; told xcrun document"),
            processing + "Stapler is incapable of working with Document files.\n66\n");
}

TEST_P(Ticket, needsTheNetwork) {
  EXPECT_EQ(validated("ticket; told xcrun offline"),
            processing +
                "CloudKit's response is inconsistent with expectations: (null)\n"
                "The validate action failed! Error 68.\n68\n");
  EXPECT_EQ(validated("told xcrun offline"),
            processing + "A.app does not have a ticket stapled to it.\n65\n");
}

TEST_P(Ticket, needsTheDeveloperTools) {
  EXPECT_EQ(validated("ticket; told xcrun no-stapler"),
            "xcrun: error: unable to find utility \"stapler\", not a developer tool or in PATH\n72\n");
  EXPECT_EQ(
      validated("ticket; told xcrun no-developer-path"),
      "xcrun: error: invalid active developer path (/Library/Developer/CommandLineTools), missing xcrun at: "
      "/Library/Developer/CommandLineTools/usr/bin/xcrun\n1\n");
  EXPECT_EQ(
      validated("ticket; told xcrun no-tools"),
      "xcode-select: note: no developer tools were found at '/Applications/Xcode.app', requesting install. "
      "Choose an option in the dialog to download the command line developer tools.\n1\n");
  EXPECT_EQ(validated("ticket; told xcrun no-tools-no-desktop"),
            "xcode-select: error: no developer tools were found at '/Applications/Xcode.app', and no install "
            "could be "
            "requested (perhaps no UI is present), please install manually from 'developer.apple.com'.\n1\n");
  EXPECT_EQ(says("status xcrun otool"),
            "xcrun: error: unable to find utility \"otool\", not a developer tool or in PATH\n72\n");
}

TEST_P(Ticket, writesItsVerdictOnStandardOutputAndTheLackOfToolsOnStandardError) {
  EXPECT_EQ(play("app A.app; codesign -s - A.app; xcrun stapler validate A.app").err, "");
  EXPECT_EQ(play("told xcrun no-stapler; xcrun stapler validate A.app").out, "");
}

TEST_P(Ticket, decidesWithTheSignatureWhetherAnApplicationIsAccepted) {
  const std::string sign = "codesign -s '" + identity + "' A.app;", origin = "origin=" + identity + "\n";
  EXPECT_EQ(judged(sign + "ticket"), "A.app: accepted\nsource=Notarized Developer ID\n" + origin + "0\n");
  EXPECT_EQ(judged(sign), "A.app: rejected\nsource=Unnotarized Developer ID\n" + origin + "3\n");
  EXPECT_EQ(judged(sign + "ticket; told spctl app-store-only"),
            "A.app: rejected\nsource=Notarized Developer ID\n" + origin + "3\n");
  EXPECT_EQ(judged("codesign -s 'Apple Mac OS Application Signing' A.app"),
            "A.app: accepted\nsource=Mac App Store\norigin=Apple Mac OS Application Signing\n0\n");
  EXPECT_EQ(judged("codesign -s - A.app"), "A.app: rejected\nsource=no usable signature\n3\n");
  EXPECT_EQ(judged("ticket"), "A.app: rejected\nsource=no usable signature\n3\n");
  EXPECT_EQ(judged(sign + "ticket; rm A.app/Contents/Resources/link"),
            "A.app: a sealed resource is missing or invalid\n1\n");
  EXPECT_EQ(judged(sign + "told spctl revoked"), "A.app: CSSMERR_TP_CERT_REVOKED\n3\n");
  EXPECT_EQ(judged("rm -r A.app"), "A.app: No such file or directory\n1\n");
  EXPECT_EQ(says("app A.vst3; codesign -s '" + identity + "' A.vst3; status spctl -a -vv A.vst3"),
            "A.vst3: rejected (the code is valid but does not seem to be an app)\n" + origin + "3\n");
}

TEST_P(Ticket, isJudgedOnStandardError) {
  const Finished finished = play("app A.app; spctl -a -vv A.app");
  EXPECT_EQ(finished.out, "");
  EXPECT_EQ(finished.status, 3);
  EXPECT_EQ(play("spctl -t install A.app").status, 2);
}

}  // namespace quarn::tests
