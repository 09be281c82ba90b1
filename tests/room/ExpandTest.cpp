// ditto -x -k

#include "RoomCase.h"

namespace quarn::tests {

namespace {

class Expand : public RoomCase {
 protected:
  void SetUp() override {
    if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
    RoomCase::SetUp();
  }

  /// After the script has made /tmp/A.zip: what ditto says, its status, and what lies below /tmp/top, whose
  /// folder `out` the archive is expanded into.
  std::string expanded(const std::string& script) const {
    return says(
        "cd /tmp; mkdir top; echo a >a\n"
        "zip() { bsdtar -cPf A.zip --format zip \"$@\"; }\n" +
        script +
        "\nstatus ditto -x -k A.zip top/out; cd top; find . -mindepth 1 | sort; ls -d /up /tmp/up "
        "2>/dev/null");
  }
};

INSTANTIATE_TEST_SUITE_P(Way, Expand, everyWayOfScripts, nameOf);

}  // namespace

TEST_P(Expand, unpacksFilesFoldersAndLinksWithTheirModes) {
  const Finished finished = play(
      "app 'My Foo.app'; chmod 555 'My Foo.app/Contents/Resources'; bsdtar -cf 'A b.zip' --format zip M*; "
      "mkdir 'the folder'; status ditto -x -k 'A b.zip' 'the folder'; cd 'the folder/My Foo.app/Contents'; "
      "stat -c '%A %n' MacOS/Main Resources; readlink Resources/link; cat 'Resources/a b'");
  EXPECT_EQ(finished.out, "0\n-rwxr-xr-x MacOS/Main\ndr-xr-xr-x Resources\na b\ntext\n");
  EXPECT_EQ(finished.err, "");
}

TEST_P(Expand, leavesOutWhatIsFoldedIntoOtherFiles) {
  EXPECT_EQ(
      expanded(
          "mkdir -p __MACOSX/Foo.app Foo.app/__MACOSX; touch __MACOSX/Foo.app/._a __MACOSX/b Foo.app/._a "
          "Foo.app/a Foo.app/b._c ._a; zip __MACOSX Foo.app ._a a"),
      "0\n./out\n./out/Foo.app\n./out/Foo.app/__MACOSX\n./out/Foo.app/a\n./out/Foo.app/b._c\n./out/a\n");
}

TEST_P(Expand, keepsEveryEntryInsideTheFolder) {
  const std::pair<std::string, std::string> entries[] = {
      {"../a", "./out/a"},
      {"../../../up/a", "./out/up/a"},
      {"b/../../../a", "./out/b/a"},
      {"/tmp/top/a", "./out/tmp/top/a"},
      {"/../tmp/../a", "./out/tmp/a"},
      {"b../a", "./out/b../a"},
  };
  for (const auto& [entry, where] : entries) {
    const std::string found = expanded("zip -s ',^a$," + entry + ",S' a; bsdtar -tf A.zip");
    EXPECT_EQ(found.substr(0, entry.size() + 3), entry + "\n0\n");
    EXPECT_EQ(found.substr(found.rfind("./out")), where + "\n") << entry;
    EXPECT_EQ(found.find("\n./up"), std::string::npos) << found;
  }
}

TEST_P(Expand, keepsLinksAsTheyAreAndNeverWritesThroughThem) {
  EXPECT_EQ(says("ln -s ../../x one; ln -s /Users two; bsdtar -cf A.zip --format zip one two; "
                 "status ditto -x -k A.zip out; readlink out/one out/two"),
            "0\n../../x\n/Users\n");
  EXPECT_EQ(expanded("mkdir -p 1 2/b; ln -s /tmp/top 1/b; echo evil >2/b/evil; zip -C 1 b -C ../2 b/evil"),
            "ditto: b/evil: Not a directory\n1\n./out\n./out/b\n");
}

TEST_P(Expand, goesOnAfterAnEntryThatFails) {
  EXPECT_EQ(
      expanded("mkdir -p in/b top/out/b; echo a >in/b/a; echo z >in/z; zip -C in b/a z; chmod 555 top/out/b"),
      "ditto: b/a: Permission denied\n1\n./out\n./out/b\n./out/z\n");
}

TEST_P(Expand, takesTheLastOfEqualNames) {
  EXPECT_EQ(
      says("cd /tmp; mkdir in; echo a >a; echo b >in/a; bsdtar -cf A.zip --format zip a -C in a; ditto -x -k "
           "A.zip out; cat out/a"),
      "b\n");
}

TEST_P(Expand, knowsWhatIsNoWholeZipArchive) {
  const std::string none = "ditto: Couldn't read PKZip signature\n1\n";
  EXPECT_EQ(expanded("echo garbage >A.zip"), none);
  EXPECT_EQ(expanded(": >A.zip"), none);
  EXPECT_EQ(expanded("tar -cf A.zip a"), none);
  EXPECT_EQ(expanded("zip a; tail -c +3 A.zip >B.zip; mv B.zip A.zip"), none);
  EXPECT_EQ(expanded("told ditto old-wording; echo garbage >A.zip"),
            "ditto: Couldn't read pkzip signature.\n1\n");
  const std::string cut =
      expanded("head -c 1000000 /dev/urandom >r; zip a r; head -c 500000 A.zip >B.zip; mv B.zip A.zip");
  EXPECT_NE(cut.find(none), std::string::npos) << cut;
  EXPECT_EQ(expanded("ditto() { /usr/bin/ditto -x -k nothing top/out; }"),
            "ditto: Cannot get the real path for source 'nothing'\n1\n");
}

TEST_P(Expand, expandsAnArchiveOfNothing) {
  EXPECT_EQ(expanded("zip -T /dev/null"), "0\n./out\n");
}

TEST_P(Expand, failsForWhatIsEncrypted) {
  const std::string found = expanded("zip --options zip:encryption --passphrase secret a </dev/null");
  EXPECT_EQ(found.rfind("ditto: a: ", 0), 0U) << found;
  EXPECT_NE(found.find("\n1\n"), std::string::npos) << found;
}

TEST_P(Expand, copiesAsEverWithOtherWords) {
  EXPECT_EQ(says("mkdir a; echo x >a/b; ditto --rsrc a c && cat c/b; status ditto -x a"),
            "x\nusage: ditto -x -k ARCHIVE DIR\n1\n");
}

}  // namespace quarn::tests
