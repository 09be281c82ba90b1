#include "RoomCase.h"

namespace quarn::tests {

namespace {

class Codesign : public RoomCase {
 protected:
  // After these the application is sealed; then comes what happens to it.
  std::string verifiedAfter(const std::string& change) const {
    return says("app A.app; codesign --force --sign - --timestamp=none A.app || exit\n" + change +
                "\nstatus codesign --verify --deep --strict A.app");
  }
};

INSTANTIATE_TEST_SUITE_P(Way, Codesign, everyWayOfScripts, nameOf);

}  // namespace

TEST_P(Codesign, signsInSilenceAndVerifiesInSilence) {
  EXPECT_EQ(verifiedAfter(""), "0\n");
  EXPECT_EQ(verifiedAfter("mv A.app B; mkdir '/Applications/My apps'; mv B '/Applications/My apps/B.app'; "
                          "ln -s '/Applications/My apps/B.app' A.app"),
            "0\n");
}

TEST_P(Codesign, knowsEveryChangeThatBreaksASeal) {
  const std::string resource = "A.app: a sealed resource is missing or invalid\n1\n";
  const std::pair<const char*, std::string> changes[] = {
      {"echo more >>'A.app/Contents/Resources/a b'", resource},
      {"printf TEXT >'A.app/Contents/Resources/a b'", resource},
      {"rm 'A.app/Contents/Resources/a b'", resource},
      {"touch A.app/Contents/Resources/new", resource},
      {"echo x >$'A.app/Contents/Resources/a\\nb'", resource},
      {"ln -sf other A.app/Contents/Resources/link", resource},
      {"rm A.app/Contents/Resources/link; cp 'A.app/Contents/Resources/a b' A.app/Contents/Resources/link",
       resource},
      {"echo more >>A.app/Contents/MacOS/Main",
       "A.app: invalid signature (code or signature have been modified)\n1\n"},
      {"echo ' ' >>A.app/Contents/Info.plist",
       "A.app: invalid Info.plist (plist or signature have been modified)\n1\n"},
      {"sed -i '/link/d' A.app/Contents/_CodeSignature/CodeResources",
       "A.app: invalid resource directory (directory or signature have been modified)\n1\n"},
      {"touch A.app/Extra", "A.app: unsealed contents present in the bundle root\n1\n"},
      {"rm -r A.app/Contents/_CodeSignature", "A.app: code object is not signed at all\n1\n"},
      {"rm -r A.app", "A.app: No such file or directory\n1\n"},
  };
  for (const auto& [change, expected] : changes) EXPECT_EQ(verifiedAfter(change), expected) << change;
}

TEST_P(Codesign, sealsNeitherTheTicketNorWhatTheFinderLeaves) {
  EXPECT_EQ(
      verifiedAfter("echo t >A.app/Contents/CodeResources; touch A.app/.DS_Store A.app/Contents/.DS_Store"),
      "0\n");
}

TEST_P(Codesign, refusesALinkThatLeadsOutOfTheBundleOnlyWhenStrict) {
  EXPECT_EQ(says("app A.app; ln -s /Users/me A.app/Contents/Resources/home; codesign -f -s - A.app;"
                 "status codesign --verify --deep A.app; status codesign --verify --deep --strict A.app"),
            "0\nA.app: invalid destination for symbolic link in bundle\n1\n");
}

TEST_P(Codesign, namesWhatDiffersOnStandardOutputWhenVerbose) {
  const Finished finished = play(
      "app A.app; codesign -f -s - A.app; cd A.app/Contents/Resources; echo >new; echo >'a b'; rm link; cd;"
      "codesign --verify -v A.app");
  EXPECT_EQ(finished.out,
            "file modified: A.app/Contents/Resources/a b\n"
            "file missing: A.app/Contents/Resources/link\n"
            "file added: A.app/Contents/Resources/new\n");
  EXPECT_EQ(finished.err, "A.app: a sealed resource is missing or invalid\n");
}

TEST_P(Codesign, replacesASignatureOnlyByForceAndSaysSo) {
  EXPECT_EQ(says("app A.app; codesign -s - A.app; echo more >>A.app/Contents/MacOS/Main;"
                 "status codesign -s - A.app; status codesign --force --deep --sign - A.app;"
                 "status codesign --verify --deep --strict A.app"),
            "A.app: is already signed\n1\nA.app: replacing existing signature\n0\n0\n");
}

TEST_P(Codesign, saysBothThatItReplacesAndWhyItCannot) {
  EXPECT_EQ(says("app A.app; codesign -s - A.app; touch A.app/Extra;"
                 "status codesign --force --sign - --timestamp=none A.app"),
            "A.app: replacing existing signature\n"
            "A.app: unsealed contents present in the bundle root\n1\n");
}

TEST_P(Codesign, cannotSignWhatItMayNotReadOrChange) {
  const std::string refused = "A.app: Permission denied\n1\nA.app: code object is not signed at all\n1\n";
  for (const std::string path : {"A.app/Contents", "'A.app/Contents/Resources/a b'"})
    EXPECT_EQ(says("app A.app; chmod a-rw " + path +
                   "; status codesign -f -s - A.app; chmod u+rw A.app/Contents; status codesign -dv A.app"),
              refused)
        << path;
}

TEST_P(Codesign, refusesWhatIsNoBundle) {
  EXPECT_EQ(says("mkdir folder; touch file; for p in folder file nothing; do status codesign -f -s - $p; "
                 "status codesign -dv $p; done"),
            "folder: bundle format unrecognized, invalid, or unsuitable\n1\n"
            "folder: bundle format unrecognized, invalid, or unsuitable\n1\n"
            "file: bundle format unrecognized, invalid, or unsuitable\n1\n"
            "file: code object is not signed at all\n1\n"
            "nothing: No such file or directory\n1\n"
            "nothing: No such file or directory\n1\n");
}

TEST_P(Codesign, showsAnAdHocSignatureOnStandardError) {
  const Finished finished = play("app A.app; codesign -s - A.app; codesign -dv A.app");
  EXPECT_EQ(finished.out, "");
  EXPECT_EQ(finished.status, 0);
  EXPECT_EQ(finished.err,
            "Executable=/Users/me/A.app/Contents/MacOS/Main\n"
            "Identifier=com.example.foo\n"
            "Format=app bundle with Mach-O thin (arm64)\n"
            "CodeDirectory v=20400 size=487 flags=0x2(adhoc) hashes=9+3 location=embedded\n"
            "Signature=adhoc\n"
            "Info.plist entries=2\n"
            "TeamIdentifier=not set\n"
            "Sealed Resources version=2 rules=13 files=4\n"
            "Internal requirements count=0 size=12\n");
}

TEST_P(Codesign, showsAuthoritiesOnlyAtTwoVs) {
  const std::string signedBy =
      "app A.app; codesign -s 'Developer ID Application: Foo Ltd (TEAM12345)' A.app;";
  EXPECT_EQ(says(signedBy + "codesign -dv A.app 2>&1 | grep -c Authority"), "0\n");
  EXPECT_EQ(says(signedBy + "codesign -dvv A.app 2>&1 | grep -E '^(Authority|TeamIdentifier|Signature)'"),
            "Signature size=9046\n"
            "Authority=Developer ID Application: Foo Ltd (TEAM12345)\n"
            "Authority=Developer ID Certification Authority\n"
            "Authority=Apple Root CA\n"
            "TeamIdentifier=TEAM12345\n");
}

TEST_P(Codesign, takesWhatOnlyTheLinkerSignedForSignedAndBroken) {
  const std::string linked = "app A.app; echo '# quarn-room: linker-signed' >>A.app/Contents/MacOS/Main;";
  EXPECT_EQ(says(linked + "codesign -dv A.app 2>&1 | grep -E 'flags|Sealed'; status codesign --verify --deep "
                          "--strict A.app"),
            "CodeDirectory v=20400 size=345 flags=0x20002(adhoc,linker-signed) hashes=8+0 location=embedded\n"
            "Sealed Resources=none\n"
            "A.app: code has no resources but signature indicates they must be present\n1\n");
  EXPECT_EQ(says(linked + "status codesign -dv A.app 2>/dev/null; status codesign -f -s - A.app;"
                          "status codesign --verify --deep --strict A.app"),
            "0\nA.app: replacing existing signature\n0\n0\n");
}

TEST_P(Codesign, signsAndVerifiesNestedCodeToo) {
  const std::string nested = "app A.app; app A.app/Contents/PlugIns/B.appex;";
  const std::string inside = "In subcomponent: A.app/Contents/PlugIns/B.appex\n1\n";
  EXPECT_EQ(says(nested + "status codesign -f -s - A.app"),
            "A.app: code object is not signed at all\n" + inside);
  EXPECT_EQ(says(nested + "status codesign -f --deep -s - A.app; status codesign --verify --deep A.app;"
                          "rm A.app/Contents/PlugIns/B.appex/Contents/Resources/link;"
                          "status codesign --verify --deep --strict A.app"),
            "0\n0\nA.app: a sealed resource is missing or invalid\n" + inside);
}

TEST_P(Codesign, takesWrongWordsWithStatusTwo) {
  const Finished finished = play("codesign --nonsense A.app");
  EXPECT_EQ(finished.status, 2);
  EXPECT_EQ(finished.err.rfind("Usage: codesign", 0), 0U) << finished.err;
}

}  // namespace quarn::tests
