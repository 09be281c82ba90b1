#include "RoomCase.h"

namespace quarn::tests {

namespace {

class Installer : public RoomCase {
 protected:
  void SetUp() override {
    if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
    RoomCase::SetUp();
  }

  /// What the script says after "A b.pkg" has been made, whose payload is an application. A script can be
  /// added by `scripted NAME LINE`, before the package is made again by `again`.
  std::string packaged(const std::string& script) const {
    return says(
        "cd /tmp; mkdir payload; app payload/Applications/Foo.app\n"
        "again() { package 'A b.pkg'; }; again\n"
        "install() { status installer -pkg \"${1-/tmp/A b.pkg}\" -target / 2>/tmp/err; cat /tmp/err; }\n"
        "scripted() { mkdir -p scripts; printf '#!/bin/sh\\n%s\\n' \"$2\" >scripts/$1; chmod 755 scripts/$1; "
        "}\n" +
        script);
  }
};

INSTANTIATE_TEST_SUITE_P(Way, Installer, everyWayOfScripts, nameOf);

const std::string name = "installer: Package name is A b\n";
const std::string installing = name + "installer: Installing at base path /\n";
const std::string success = installing + "installer: The install was successful.\n0\n";
const std::string scriptFailed =
    "installer: The install failed. (The Installer encountered an error that caused the installation to "
    "fail. "
    "Contact the software manufacturer for assistance. An error occurred while running scripts from the "
    "package "
    "“A b.pkg”.)\n1\n";

}  // namespace

TEST_P(Installer, unpacksThePayloadAndWritesAReceipt) {
  EXPECT_EQ(
      packaged("chmod 777 payload/Applications/Foo.app/Contents/MacOS/Main; again; install; diff -r "
               "payload/Applications/Foo.app /Applications/Foo.app; "
               "stat -c %A /Applications/Foo.app/Contents/MacOS/Main; readlink "
               "/Applications/Foo.app/Contents/Resources/link; pkgutil --pkgs; cat /var/db/*receipts/*"),
      success +
          "-rwxrwxrwx\na b\ncom.example.foo\nversion 1.2\nlocation /\nfile Applications\n"
          "file Applications/Foo.app\nfile Applications/Foo.app/Contents\n"
          "file Applications/Foo.app/Contents/Info.plist\nfile Applications/Foo.app/Contents/MacOS\n"
          "file Applications/Foo.app/Contents/MacOS/Main\nfile Applications/Foo.app/Contents/Resources\n"
          "file Applications/Foo.app/Contents/Resources/a b\n"
          "file Applications/Foo.app/Contents/Resources/link\n");
}

TEST_P(Installer, readsPayloadsThatAreNotCompressed) {
  EXPECT_EQ(packaged("bsdtar --format newc -cf members/Payload -C payload .; pack 'A b.pkg'; "
                     "install; ls /Applications"),
            success + "Foo.app\nUtilities\n");
}

TEST_P(Installer, installsAtThePlaceThatThePackageNames) {
  EXPECT_EQ(packaged("sed -i 's,=\"/\",=\"/Library/My Fonts\",' members/PackageInfo; pack 'A b.pkg'; "
                     "install; ls '/Library/My Fonts/Applications'; "
                     "sed -n 2p /var/db/*receipts/*"),
            success + "Foo.app\nlocation /Library/My Fonts\n");
}

TEST_P(Installer, tellsAnUpgradeByTheReceipt) {
  EXPECT_EQ(packaged("install; rm -r /Applications/Foo.app; install; ls /Applications"),
            success + name +
                "installer: Upgrading at base path /\ninstaller: The upgrade was successful.\n0\n"
                "Foo.app\nUtilities\n");
}

TEST_P(Installer, installsTheComponentsThatADistributionNames) {
  const std::string product = "installer: Package name is A & B\n";
  EXPECT_EQ(
      packaged(
          "mv payload/Applications/Foo.app payload/Applications/Two.app; scripted preinstall 'ls "
          "/Applications >/tmp/before'; package Two.pkg com.example.two; rm -r payload/*; touch payload/no; "
          "package no.pkg com.example.no; product P.pkg 'A b.pkg' Two.pkg no.pkg; sed -i '/#no/d' "
          "members/Distribution; pack P.pkg; install P.pkg; ls "
          "/Applications; cat before; pkgutil --pkgs | sort; ls /no; install Two.pkg | head -2"),
      product +
          "installer: Installing at base path /\ninstaller: The install was successful.\n0\n"
          "Foo.app\nTwo.app\nUtilities\nFoo.app\nUtilities\ncom.example.foo\ncom.example.two\n"
          "ls: cannot access '/no': No such file or directory\n"
          "installer: Package name is Two\ninstaller: Upgrading at base path /\n");
}

TEST_P(Installer, runsTheScriptsAroundThePayload) {
  const std::string tells =
      "echo ${0##*/} $#; printf \"<%s>\" \"$@\"; echo; ls /Applications; ls; cat; echo oops >&2; [ "
      "\"${0%/*}\" = "
      "\"$PWD\" ]";
  EXPECT_EQ(packaged("scripted preinstall '" + tells + "'; scripted postinstall '" + tells +
                     "'; touch scripts/more; again; echo in | install; cat /var/log/install.log"),
            success +
                "preinstall 4\n</tmp/A b.pkg></></></>\nUtilities\nmore\npostinstall\npreinstall\noops\n"
                "postinstall 4\n</tmp/A "
                "b.pkg></></></>\nFoo.app\nUtilities\nmore\npostinstall\npreinstall\noops\n");
}

TEST_P(Installer, stopsWhereAScriptFails) {
  EXPECT_EQ(packaged("scripted preinstall 'exit 3'; again; install; ls /Applications; pkgutil --pkgs"),
            installing + scriptFailed + "Utilities\n");
  EXPECT_EQ(packaged("scripted postinstall 'exit 3'; again; install; ls /Applications; pkgutil --pkgs"),
            installing + scriptFailed + "Foo.app\nUtilities\n");
  EXPECT_EQ(packaged("scripted preinstall ''; chmod 644 scripts/*; again; install; ls /Applications"),
            installing + scriptFailed + "Utilities\n");
}

TEST_P(Installer, installsAPackageOfScriptsAlone) {
  EXPECT_EQ(
      packaged("rm -r payload; scripted postinstall 'touch /tmp/done'; again; install; ls /tmp/done; cat "
               "/var/db/*receipts/*"),
      success + "/tmp/done\nversion 1.2\nlocation /\n");
}

TEST_P(Installer, refusesACertificateThatIsNotTrusted) {
  const std::string refused =
      name +
      "installer: Certificate used to sign package is not trusted. Use -allowUntrusted to override.\n1\n";
  EXPECT_EQ(
      packaged("for kind in untrusted expired; do sign A*.pkg $kind; install; ls /Applications; pkgutil "
               "--pkgs; done"),
      refused + "Utilities\n" + refused + "Utilities\n");
  EXPECT_EQ(packaged("for kind in notarized developer-id apple app-store; do sign A*.pkg $kind; install; "
                     "pkgutil --forget com.example.foo >said; done"),
            success + success + success + success);
}

TEST_P(Installer, installsNothingOfAPackageThatWasChanged) {
  const std::string failed = "installer: The install failed. (The package is damaged.)\n1\n";
  EXPECT_EQ(packaged("sign A*.pkg apple; echo >>A*.pkg; install; ls /Applications"),
            name + failed + "Utilities\n");
  EXPECT_EQ(packaged("head -c 9999 /dev/urandom >payload/r; again; truncate -s -999 A*.pkg; install; ls "
                     "/Applications"),
            name + failed + "Utilities\n");
}

TEST_P(Installer, saysThatAPathIsInvalid) {
  const std::string invalid = "installer: Error - the package path specified was invalid: 'N o'.\n1\n";
  EXPECT_EQ(
      packaged("install 'N o'; echo garbage >'N o'; install 'N o'; rm N*; mkdir 'N o'; install 'N o'; rmdir "
               "N*; bsdtar --format xar -cf 'N o' payload; install 'N o'"),
      invalid + invalid + invalid + invalid);
}

TEST_P(Installer, failsWithoutAComponentOrItsIdentifier) {
  EXPECT_EQ(
      packaged("product P.pkg 'A b.pkg'; rm -r members/A*; pack 'A b.pkg'; "
               "install; for id in '' a/b; do package 'A b.pkg' \"$id\"; install; done; ls /Applications"),
      "installer: Package name is A & B\ninstaller: Installing at base path /\n"
      "installer: The install failed.\n1\n" +
          installing + "installer: The install failed.\n1\n" + installing +
          "installer: The install failed.\n1\nUtilities\n");
}

TEST_P(Installer, failsWhereItMayNotWrite) {
  EXPECT_EQ(packaged("chmod 555 /Applications; install; ls /Applications; pkgutil --pkgs"),
            installing + "installer: The install failed.\n1\nUtilities\n");
}

TEST_P(Installer, failsAsItIsTold) {
  const std::pair<std::string, std::string> orders[] = {
      {"not-root", "installer: Must be run as root to install this package.\n1\n"},
      {"disabled", name + "installer: Cannot install on volume / because it is disabled.\n1\n"},
      {"install-fails", installing + "installer: The install failed.\n1\n"},
      {"install-fails It is Monday.", installing + "installer: The install failed. (It is Monday.)\n1\n"},
  };
  std::string script, expected;
  for (const auto& [order, lines] : orders) {
    script += "told installer '" + order + "'; install; ls /Applications; pkgutil --pkgs\n";
    expected += lines + "Utilities\n";
  }
  EXPECT_EQ(packaged(script), expected);
}

TEST_P(Installer, leavesAloneWhatStandsInTheFoldersThatItAddsTo) {
  EXPECT_EQ(packaged("mkdir -p /Applications/Foo.app/Contents; touch /Applications/Foo.app/mine; chmod 700 "
                     "/Applications/Foo.app; chmod 711 /; install; stat -c %a / /Applications/Foo.app; ls "
                     "/Applications/Foo.app"),
            success + "711\n700\nContents\nmine\n");
}

TEST_P(Installer, putsAFolderInThePlaceOfALink) {
  EXPECT_EQ(packaged("mkdir -p /Users/me/Foo.app; touch /Users/me/Foo.app/mine; ln -s /Users/me/Foo.app "
                     "/Applications/Foo.app; install; stat -c %F /Applications/Foo.app; ls /Users/me/Foo.app "
                     "/Applications/Foo.app"),
            success + "directory\n/Applications/Foo.app:\nContents\n\n/Users/me/Foo.app:\nmine\n");
}

TEST_P(Installer, refusesWordsThatItDoesNotKnow) {
  EXPECT_EQ(says("for words in '' '-pkg A' '-pkg A -target /Volumes/X9' '-target / -pkg A' '-pkg A -target / "
                 "-v'; do "
                 "installer $words; echo $?; done | sort | uniq -c | sed 's/^ *//'"),
            "5 1\n5 Usage: installer -pkg <path> -target /\n");
}

}  // namespace quarn::tests
