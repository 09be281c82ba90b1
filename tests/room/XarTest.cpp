#include "RoomCase.h"
#include "tests/support/Packages.h"

namespace quarn::tests {

namespace {

class Xar : public RoomCase {
 protected:
  void SetUp() override {
    if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
    RoomCase::SetUp();
  }

  /// After a product archive P.pkg, whose second component has a name like that of another member.
  std::string product(const std::string& script) const {
    return says(
        "cd /tmp; mkdir -p out payload/Applications scripts Resources/en; echo a >payload/Applications/a\n"
        "echo text >Resources/en/Distribution.txt; echo '#!/bin/sh' >scripts/postinstall\n"
        "package Foo.pkg; package MyDistribution.pkg; product P.pkg Foo.pkg MyDistribution.pkg\n" +
        script);
  }

  /// After an archive H.pkg that no ordinary tool makes, with these elements and "evil" to cut out of.
  std::string hostile(const std::string& files, const std::string& script) const {
    std::string octal;
    for (const char byte : packages::archiveOf(files, "evil")) {
      const auto number = static_cast<unsigned char>(byte);
      octal += {'\\', static_cast<char>('0' + number / 64), static_cast<char>('0' + number / 8 % 8),
                static_cast<char>('0' + number % 8)};
    }
    return says("cd /tmp; mkdir -p up/out; cd up; printf '" + octal + "' >H.pkg\n" + script);
  }

  static std::string evilFile(const std::string& name) {
    return "<file id=\"1\"><name>" + name +
           "</name><type>file</type><data><length>4</length><offset>0</offset>"
           "<size>4</size><encoding style=\"application/octet-stream\"/></data></file>";
  }
};

INSTANTIATE_TEST_SUITE_P(Way, Xar, everyWayOfScripts, nameOf);

}  // namespace

TEST_P(Xar, listsEachFolderRightBeforeItsMembers) {
  EXPECT_EQ(product("status xar -tf P.pkg"),
            "Distribution\n"
            "Foo.pkg\nFoo.pkg/PackageInfo\nFoo.pkg/Payload\nFoo.pkg/Scripts\n"
            "MyDistribution.pkg\nMyDistribution.pkg/PackageInfo\nMyDistribution.pkg/Payload\n"
            "MyDistribution.pkg/Scripts\n"
            "Resources\nResources/en\nResources/en/Distribution.txt\n0\n");
}

TEST_P(Xar, unpacksEverythingInSilence) {
  EXPECT_EQ(
      product("status xar -xf P.pkg -C out; diff -r members out && cd out && xar -xf ../P.pkg && cd .. && "
              "diff -r members out && echo equal"),
      "0\nequal\n");
}

TEST_P(Xar, takesEachNameForAnExpressionThatMatchesAnywhere) {
  const std::string ofMine =
      "MyDistribution.pkg/PackageInfo\nMyDistribution.pkg/Payload\nMyDistribution.pkg/Scripts\n";
  const std::string resource = "Resources/en/Distribution.txt\n";
  const std::string none = "No files matched extraction criteria.\n3\n";
  const std::pair<std::string, std::string> rows[] = {
      {"PackageInfo Distribution", "0\nDistribution\nFoo.pkg/PackageInfo\n" + ofMine + resource},
      {"Distribution", "0\nDistribution\n" + ofMine + resource},
      {"'^Distribution$'", "0\nDistribution\n"},
      {"PackageInfo", "0\nFoo.pkg/PackageInfo\nMyDistribution.pkg/PackageInfo\n"},
      {"F.o.pkg/P", "0\nFoo.pkg/PackageInfo\nFoo.pkg/Payload\n"},
      {"'Fo*.pkg/Payload'", "0\nFoo.pkg/Payload\n"},
      {"'^Foo.pkg$'", "0\n"},
      {"'^Foo.pkg'", "0\nFoo.pkg/PackageInfo\nFoo.pkg/Payload\nFoo.pkg/Scripts\n"},
      {"'Fo+.pkg' '(Foo|My)' 'foo'", none},
      {"Foo.pkg/Bom", none},
  };
  std::string script, expected;
  for (const auto& [names, files] : rows) {
    script += "echo == \"" + names + "\"; rm -r out; mkdir out; status xar -xf P.pkg -C out " + names +
              "; find out -type f | cut -c 5- | sort\n";
    expected += "== " + names + "\n" + files;
  }
  EXPECT_EQ(product(script), expected);
}

TEST_P(Xar, makesTheFoldersThatAMemberNeeds) {
  EXPECT_EQ(product("xar -xf P.pkg -C out PackageInfo; cd out; find . -mindepth 1 | sort"),
            "./Foo.pkg\n./Foo.pkg/PackageInfo\n./MyDistribution.pkg\n./MyDistribution.pkg/PackageInfo\n");
}

TEST_P(Xar, takesAMembersPathForItselfWhenItUnpacks) {
  EXPECT_EQ(says("cd /tmp; mkdir in out; touch 'in/[ab]' in/a 'in/x*' in/xy 'in/b\\c' 'in/ü d'; "
                 "bsdtar --format xar -cf P -C in '[ab]' a 'x*' xy 'b\\c' 'ü d'; "
                 "xar -xf P -C out '^.ab.$' '^x.$' 'b' 'ü'; ls out; xar -tf P"),
            "[ab]\nb\\c\nx*\nxy\nü d\n[ab]\na\nx*\nxy\nb\\c\nü d\n");
}

TEST_P(Xar, replacesWhatIsThere) {
  EXPECT_EQ(product("echo old >out/Distribution; mkdir out/Foo.pkg; echo mine >out/Foo.pkg/mine; "
                    "xar -xf P.pkg -C out && diff -r members out"),
            "Only in out/Foo.pkg: mine\n");
}

TEST_P(Xar, refusesWhatIsNoArchive) {
  std::string script, expected;
  for (const std::string make : {":", ": >N", "echo garbage >N", "mkdir N", "bsdtar --format zip -cf N out",
                                 "tar -cf N out", "head -c 300 P.pkg >N"}) {
    script += "echo '" + make + "'; rm -rf N; " + make +
              "; for how in -tf -xf; do xar $how N 2>&1 >said; echo $?; cat said; done\n";
    expected += make + "\nError opening xar archive: N\n1\nError opening xar archive: N\n1\n";
  }
  EXPECT_EQ(product(script), expected);
}

TEST_P(Xar, saysThatItCannotEnterAFolder) {
  EXPECT_EQ(
      product("status xar -xf P.pkg -C nothing; status xar -xf P.pkg -C P.pkg; status xar -xf N -C nothing; "
              "ls -A out"),
      "Unable to chdir to nothing\n1\nUnable to chdir to P.pkg\n1\nError opening xar archive: N\n1\n");
}

TEST_P(Xar, listsInvalidPathsAsSuchAndNeverUnpacksThem) {
  const std::string names[] = {"..", "../evil", "/tmp/evil", "a/..", "a/../../evil"};
  std::string invalid, warnings;
  for (const std::string& name : names) {
    invalid += evilFile(name);
    warnings += "Warning, archive contains invalid path: " + name + "\n";
  }
  EXPECT_EQ(hostile(invalid + evilFile("good"), "xar -tf H.pkg 2>err | LC_ALL=C sort; cat err"),
            warnings + "good\n");
  EXPECT_EQ(hostile(invalid + evilFile("good"), "status xar -xf H.pkg -C out; find /tmp -name evil; ls out"),
            "0\ngood\n");
  EXPECT_EQ(hostile(invalid, "status xar -xf H.pkg -C out; find /tmp -name evil"),
            "No files matched extraction criteria.\n3\n");
  EXPECT_EQ(
      hostile(evilFile("a..b") + evilFile("..c"),
              "xar -tf H.pkg | grep -c Warning; xar -xf H.pkg -C out; find out -type f | LC_ALL=C sort"),
      "0\nout/..c\nout/a..b\n");
}

TEST_P(Xar, doesNotUnpackWhatLiesBelowALink) {
  EXPECT_EQ(
      hostile("<file id=\"2\"><name>l</name><type>symlink</type><link type=\"file\">/Users/me</link>" +
                  evilFile("evil") + "</file>",
              "xar -tf H.pkg; xar -xf H.pkg -C out >said; readlink out/l; find /Users/me /tmp -name evil"),
      "l\nl/evil\n/Users/me\n");
}

TEST_P(Xar, saysOnStandardOutputWhatItCannotUnpack) {
  const std::string found = product(
      "head -c 100000 /dev/urandom >payload/r; package D.pkg; size=$(stat -c %s D.pkg); printf '%99s' x | "
      "dd of=D.pkg bs=1 seek=$((size / 2)) conv=notrunc 2>/dev/null; status xar -xf D.pkg -C out 2>err; cat "
      "err; "
      "ls out");
  EXPECT_EQ(found.rfind("Error while extracting archive:(Payload) ", 0), 0U) << found;
  EXPECT_EQ(found.substr(found.find('\n')), "\n1\nPackageInfo\nPayload\n");
}

TEST_P(Xar, refusesWordsThatItDoesNotKnow) {
  for (const std::string words : {"", "-tf", "-x P.pkg", "-cf P.pkg out", "P.pkg -tf"}) {
    const std::string found = says("status xar " + words);
    EXPECT_EQ(found.rfind("Usage: xar ", 0), 0U) << words << found;
    EXPECT_NE(found.find("\nDEPRECATION WARNING: "), std::string::npos) << words << found;
    EXPECT_EQ(found.substr(found.size() - 3), "\n1\n") << words;
  }
}

}  // namespace quarn::tests
