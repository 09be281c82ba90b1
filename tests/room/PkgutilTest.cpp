#include "RoomCase.h"

namespace quarn::tests {

namespace {

class Pkgutil : public RoomCase {
 protected:
  void SetUp() override {
    if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
    RoomCase::SetUp();
  }

  /// What the script says after "A b.pkg" has been made, which isn't signed.
  std::string packaged(const std::string& script) const {
    return says(
        "cd /tmp; mkdir -p payload/Applications; head -c 9999 /dev/urandom >payload/Applications/a\n"
        "package 'A b.pkg'; check() { status pkgutil --check-signature \"${1-A b.pkg}\"; }\n" +
        script);
  }

  /// The status line and the exit status after a change to a package that somebody signed.
  std::string after(const std::string& change) const {
    return packaged("sign 'A b.pkg' notarized\n" + change +
                    "\ncheck | grep -v -e Package -e '^    ' -e Chain");
  }

  /// What the script says with three receipts, whose files name what was installed.
  std::string withReceipts(const std::string& script) const {
    return says(
        "mkdir -p /var/db/quarn-room-receipts; cd /var/db/quarn-room-receipts\n"
        "for id in com.example.Foo com.example.Foo.helper com-example-Foo2; do echo 'file a b' >$id; done\n" +
        script);
  }
};

INSTANTIATE_TEST_SUITE_P(Way, Pkgutil, everyWayOfScripts, nameOf);

const std::string statusLine = "   Status: package is invalid (checksum did not verify)\n";
const std::string invalid = statusLine + "1\n";
const std::string noSignature = "   Status: no signature\n1\n";

}  // namespace

TEST_P(Pkgutil, tellsThatAPackageIsNotSigned) {
  EXPECT_EQ(packaged("check"), "Package \"A b.pkg\":\n" + noSignature);
  EXPECT_EQ(packaged("mkdir d; mv A*.pkg d/C.app; check /tmp/d/C.app"), "Package \"C\":\n" + noSignature);
}

TEST_P(Pkgutil, laysOutASignatureAsTheRealToolDoes) {
  EXPECT_EQ(packaged("sign 'A b.pkg' notarized 'Foo & Söhne (AB12CD34EF)'; check | grep -v '^           '"),
            "Package \"A b.pkg\":\n"
            "   Status: signed by a developer certificate issued by Apple for distribution\n"
            "   Notarization: trusted by the Apple notary service\n"
            "   Signed with a trusted timestamp on: 2026-09-21 09:07:44 +0000\n"
            "   Certificate Chain:\n"
            "    1. Developer ID Installer: Foo & Söhne (AB12CD34EF)\n"
            "       Expires: 2031-09-16 12:00:00 +0000\n"
            "       SHA256 Fingerprint:\n"
            "       ------------------------------------------------------------------------\n"
            "    2. Developer ID Certification Authority\n"
            "       Expires: 2035-02-09 21:40:36 +0000\n"
            "       SHA256 Fingerprint:\n"
            "       ------------------------------------------------------------------------\n"
            "    3. Apple Root CA\n"
            "       Expires: 2035-02-09 21:40:36 +0000\n"
            "       SHA256 Fingerprint:\n"
            "0\n");
  EXPECT_EQ(
      packaged("sign 'A b.pkg' untrusted; check | grep -cE '^           ([0-9A-F]{2} ){15}[0-9A-F]{2}$'"),
      "2\n");
}

TEST_P(Pkgutil, tellsEveryKindOfSignature) {
  const std::string developer =
      "   Status: signed by a developer certificate issued by Apple for distribution\n";
  const std::string timestamp = "   Signed with a trusted timestamp on: 2026-09-21 09:07:44 +0000\n";
  const std::string installer = "    1. Developer ID Installer: Example Ltd (TEAM12345)\n";
  const std::string later = "       Expires: 2031-09-16 12:00:00 +0000\n";
  const std::pair<std::string, std::string> kinds[] = {
      {"notarized",
       developer + "   Notarization: trusted by the Apple notary service\n" + timestamp + installer + later},
      {"developer-id", developer + timestamp + installer + later},
      {"apple", "   Status: signed Apple Software\n    1. Software Update\n" + later},
      {"app-store",
       "   Status: signed by a certificate trusted by macOS\n    1. 3rd Party Mac Developer Installer: "
       "Example Ltd (TEAM12345)\n" +
           later},
      {"untrusted", "   Status: signed by untrusted certificate\n    1. Example Ltd (TEAM12345)\n" + later},
      {"expired", "   Status: signed by a certificate that has since expired\n" + installer +
                      "       Expires: 2021-09-16 12:00:00 +0000\n"},
  };
  std::string script, expected;
  for (const auto& [kind, lines] : kinds) {
    script += "sign 'A b.pkg' " + kind +
              "; check >said; tail -1 said; grep -e '^   [NS]' -e '   1' -e Expires -m 5 "
              "said | sed '/Expires/q'\n";
    expected += "0\n" + lines;
  }
  EXPECT_EQ(packaged(script), expected);
}

TEST_P(Pkgutil, findsASignedPackageInvalidAfterAnyChange) {
  EXPECT_EQ(after("size=$(stat -c %s A*.pkg); cp A*.pkg whole; for at in 0 30 200 $((size / 2)) $((size - "
                  "200)) $((size "
                  "- 60)); do cp whole 'A b.pkg'; printf ZZZZ | dd of='A b.pkg' bs=1 conv=notrunc seek=$at "
                  "2>/dev/null; "
                  "check | grep Status; done"),
            statusLine + statusLine + statusLine + statusLine + statusLine + statusLine + invalid);
  EXPECT_EQ(after("echo >>A*.pkg"), invalid);
  EXPECT_EQ(after("tail -n 1 A*.pkg >line; cat line >>A*.pkg"), invalid);
  EXPECT_EQ(after("tail -n 1 A*.pkg >line; package 'A b.pkg' com.example.other; (echo; cat line) >>A*.pkg"),
            invalid);
}

TEST_P(Pkgutil, findsADamagedPackageInvalidThoughNobodySignedIt) {
  EXPECT_EQ(packaged("head -c 9000 A*.pkg >C.pkg; check C.pkg"), "Package \"C.pkg\":\n" + invalid);
}

TEST_P(Pkgutil, takesAnyOtherFileForNotSigned) {
  EXPECT_EQ(packaged("echo garbage >C.pkg; check C.pkg; : >D.pkg; check D.pkg"),
            "Package \"C.pkg\":\n" + noSignature + "Package \"D.pkg\":\n" + noSignature);
  EXPECT_EQ(packaged("check nothing"), "Could not open package: nothing\n1\n");
}

TEST_P(Pkgutil, knowsASignatureThatWasCopiedOrRenewed) {
  EXPECT_EQ(
      packaged("sign 'A b.pkg' expired; sign 'A b.pkg' apple; cp A*.pkg C.pkg; rm A*.pkg; check C.pkg | "
               "grep -e Status -e '^[0-9]'; xar -tf C.pkg; grep -ac '^quarn-room' C.pkg"),
      "   Status: signed Apple Software\n0\nPackageInfo\nPayload\n1\n");
}

TEST_P(Pkgutil, isNotSignedForByUnknownKinds) {
  EXPECT_EQ(
      packaged("status sign 'A b.pkg' revoked; status sign 'A b.pkg'; echo x >C; status sign C apple; cat C"),
      "usage: sign-package PACKAGE KIND [NAME]\n64\nusage: sign-package PACKAGE KIND [NAME]\n64\n"
      "sign-package: no package: C\n1\nx\n");
}

TEST_P(Pkgutil, listsTheReceiptsInWhichAnExpressionIsFound) {
  const std::string foo = "com.example.Foo\n";
  const std::string all = "com-example-Foo2\n" + foo + "com.example.Foo.helper\n";
  const std::pair<std::string, std::string> rows[] = {
      {"--pkgs=com.example.Foo", "0\n" + all},
      {"--pkgs=", "0\n" + all},
      {"'--pkgs=^com\\.example\\.Foo$'", "0\n" + foo},
      {"'--pkgs=(per|xam).*r$'", "0\ncom.example.Foo.helper\n"},
      {"'--pkgs=Fo+[0-9]'", "0\ncom-example-Foo2\n"},
      {"--pkgs=foo", "1\n"},
      {"--pkgs", "0\n" + all},
  };
  std::string script, expected;
  for (const auto& [word, lines] : rows) {
    script += "pkgutil " + word + " >/tmp/said; echo $?; sort /tmp/said\n";
    expected += lines;
  }
  EXPECT_EQ(withReceipts(script), expected);
  EXPECT_EQ(says("status pkgutil --pkgs; status pkgutil --pkgs=.; status pkgutil --pkgs=-v"), "0\n1\n1\n");
}

TEST_P(Pkgutil, listsNothingForABrokenExpression) {
  EXPECT_EQ(
      withReceipts("touch '(' '[' '+'\n"
                   "for broken in '(' '[' 'Foo[' 'Foo(' 'a{2,1}' 'Foo\\'; do\n"
                   "  pkgutil \"--pkgs=$broken\" >/tmp/said 2>/tmp/complained && echo \"found by $broken\"\n"
                   "  cat /tmp/said; [ -s /tmp/complained ] || echo \"silent about $broken\"\n"
                   "done; pkgutil '--pkgs=\\(|\\[|[+]' | sort"),
      "(\n+\n[\n");
}

TEST_P(Pkgutil, forgetsOneReceipt) {
  EXPECT_EQ(withReceipts("status pkgutil --forget com.example.Foo; pkgutil --pkgs | sort; "
                         "pkgutil --forget com.example.Foo 2>&1 >/tmp/said; echo $?; cat /tmp/said"),
            "Forgot package 'com.example.Foo' on '/'.\n0\ncom-example-Foo2\ncom.example.Foo.helper\n"
            "No receipt for 'com.example.Foo' found at '/'.\n1\n");
  EXPECT_EQ(
      withReceipts("touch ../other; for id in '' com ../other; do status pkgutil --forget \"$id\"; done; "
                   "ls . ../other | wc -l"),
      "No receipt for '' found at '/'.\n1\nNo receipt for 'com' found at '/'.\n1\n"
      "No receipt for '../other' found at '/'.\n1\n6\n");
}

TEST_P(Pkgutil, keepsAProtectedReceiptAndSaysThatItForgotIt) {
  EXPECT_EQ(withReceipts("told pkgutil protected; status pkgutil --forget com.example.Foo; ls | wc -l"),
            "Unknown error Error Domain=NSCocoaErrorDomain Code=4 \"(null)\"\n"
            "Forgot package 'com.example.Foo' on '/'.\n0\n3\n");
}

TEST_P(Pkgutil, listsTheFilesOfAReceipt) {
  EXPECT_EQ(withReceipts("status pkgutil --files com.example.Foo; status pkgutil --files com.example"),
            "a b\n0\nNo receipt for 'com.example' found at '/'.\n1\n");
}

TEST_P(Pkgutil, refusesWordsThatItDoesNotKnow) {
  EXPECT_EQ(says("for words in '' '--pkgs x' '--pkgs= x' --forget '--files a b' --check '--expand a'; do "
                 "pkgutil $words 2>&1; echo $?; done | cut -c 1-14 | sort | uniq -c | sed 's/^ *//'"),
            "7 64\n7 Usage: pkgutil\n");
}

}  // namespace quarn::tests
