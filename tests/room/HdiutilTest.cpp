
#include "RoomCase.h"

namespace quarn::tests {

namespace {

class Hdiutil : public RoomCase {
 protected:
  void SetUp() override {
    if (!hasBsdtar()) GTEST_SKIP() << "bsdtar is not installed (libarchive-tools)";
    RoomCase::SetUp();
  }

  Finished imaged(const std::string& script) const { return play(scene + script); }

  /// What `imaged` writes to standard output, with the property list shortened to a line for each entry.
  std::string listed(const std::string& script) const {
    return imaged("list() { hdiutil attach \"$1\" -plist -nobrowse -readonly >list; s=$?;" + shorten +
                  "return $s; }\nexec 2>&1\n" + script)
        .out;
  }

  std::string shaped(const std::string& shape) const {
    return listed("told hdiutil 'shape " + shape + "' 'order device'; list I.dmg");
  }

 private:
  const std::string scene =
      "cd /tmp; mkdir -p 'in/My Foo.app/Contents'; echo text >'in/My Foo.app/Contents/a'\n"
      "ln -s /Applications in/Applications; chmod 555 in/*.app\n"
      "image() { bsdtar -cf \"$1\" --format iso9660 --options volume-id=\"${2-VOLUME}\" -C in .; }\n"
      "image I.dmg; at='-plist -nobrowse -readonly'\n";

  const std::string shorten =
      "tr -d '\\n\\t' <list | sed 's,</dict>,\\n,g' | sed -n 's/.*<dict>//; s/<key>/ /g; s,</key>,=,g; "
      "s/<[^<>]*string>//g; s/^ //p';";
};

INSTANTIATE_TEST_SUITE_P(Way, Hdiutil, everyWayOfScripts, nameOf);

}  // namespace

TEST_P(Hdiutil, printsThePropertyListOfTheRealTool) {
  const Finished finished = imaged("hdiutil attach I.dmg -plist -nobrowse -readonly");
  EXPECT_EQ(finished.out,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
            "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
            "<plist version=\"1.0\">\n<dict>\n\t<key>system-entities</key>\n\t<array>\n"
            "\t\t<dict>\n"
            "\t\t\t<key>content-hint</key>\n\t\t\t<string>Apple_HFS</string>\n"
            "\t\t\t<key>dev-entry</key>\n\t\t\t<string>/dev/disk4s1</string>\n"
            "\t\t\t<key>mount-point</key>\n\t\t\t<string>/Volumes/VOLUME</string>\n"
            "\t\t\t<key>potentially-mountable</key>\n\t\t\t<true/>\n"
            "\t\t\t<key>unmapped-content-hint</key>\n"
            "\t\t\t<string>48465300-0000-11AA-AA11-00306543ECAC</string>\n"
            "\t\t\t<key>volume-kind</key>\n\t\t\t<string>hfs</string>\n"
            "\t\t</dict>\n"
            "\t\t<dict>\n"
            "\t\t\t<key>content-hint</key>\n\t\t\t<string>GUID_partition_scheme</string>\n"
            "\t\t\t<key>dev-entry</key>\n\t\t\t<string>/dev/disk4</string>\n"
            "\t\t\t<key>potentially-mountable</key>\n\t\t\t<false/>\n"
            "\t\t\t<key>unmapped-content-hint</key>\n\t\t\t<string>GUID_partition_scheme</string>\n"
            "\t\t</dict>\n"
            "\t</array>\n</dict>\n</plist>\n");
  EXPECT_EQ(finished.err, "");
}

TEST_P(Hdiutil, mountsTheContentForReadingOnly) {
  // An ISO 9660 image holds no right to write; an archive does.
  for (const std::string make : {"image VOLUME.dmg", "bsdtar -cf VOLUME.dmg --format zip -C in ."}) {
    const Finished finished = imaged(
        make +
        "; hdiutil attach VOLUME.dmg $at >list; cd /Volumes/VOLUME; touch new; touch 'My Foo.app/new'; "
        "echo new >'My Foo.app/Contents/a'; rm Applications; find . | sort; cat 'My Foo.app/Contents/a'; "
        "readlink "
        "Applications; grep -c '^/dev/disk4s1 /Volumes/VOLUME tmpfs ro' /etc/mtab");
    EXPECT_EQ(finished.out,
              ".\n./Applications\n./My Foo.app\n./My Foo.app/Contents\n./My Foo.app/Contents/a\ntext\n"
              "/Applications\n1\n")
        << make << finished.err;
  }
}

TEST_P(Hdiutil, detachesByMountPointOrByAnyDevice) {
  for (const std::string target :
       {"/Volumes/VOLUME", "/Volumes/VOLUME/", "/dev/disk4", "/dev/disk4s1", "disk4", "disk4s1"}) {
    const Finished finished = imaged("hdiutil attach I.dmg $at >list; status hdiutil detach " + target +
                                     "; ls -A /Volumes /var/db/quarn-room-disks; grep Volumes/ /etc/mtab");
    EXPECT_EQ(finished.out, "\"disk4\" ejected.\n0\n/Volumes:\n\n/var/db/quarn-room-disks:\n") << target;
    EXPECT_EQ(finished.err, "");
  }
}

TEST_P(Hdiutil, saysNothingWhenItIsToBeQuiet) {
  EXPECT_EQ(
      listed(
          "told hdiutil warn-deprecated; list I.dmg >list 2>&1; status hdiutil detach /Volumes/VOLUME -quiet;"
          "status hdiutil detach /Volumes/VOLUME -quiet"),
      "0\n1\n");
}

TEST_P(Hdiutil, doesNotKnowWhatIsNotAttached) {
  EXPECT_EQ(listed("for t in /Volumes/VOLUME /dev/disk4 /; do status hdiutil detach $t; done"),
            "hdiutil: detach failed - No such file or directory\n1\n"
            "hdiutil: detach failed - No such file or directory\n1\n"
            "hdiutil: detach failed - No such file or directory\n1\n");
}

TEST_P(Hdiutil, answersInTheShapesOfTheRealTool) {
  const std::string hfs = "48465300-0000-11AA-AA11-00306543ECAC", mounted = "mount-point=/Volumes/VOLUME ";
  const std::string container = "EF57347C-0000-11AA-AA11-00306543ECAC";
  const std::string apfs = "41504653-0000-11AA-AA11-00306543ECAC";
  const auto entry = [](const std::string& hint, const std::string& device, const std::string& unmapped) {
    return "content-hint=" + hint + " dev-entry=/dev/" + device +
           " potentially-mountable=<false/> unmapped-content-hint=" + unmapped + "\n";
  };
  const auto volume = [&](const std::string& hint, const std::string& device, const std::string& unmapped,
                          const std::string& kind) {
    return "content-hint=" + hint + " dev-entry=/dev/" + device + " " + mounted +
           "potentially-mountable=<true/> unmapped-content-hint=" + unmapped + " volume-kind=" + kind + "\n";
  };
  const std::string guid = entry("GUID_partition_scheme", "disk4", "GUID_partition_scheme");
  EXPECT_EQ(shaped("hfs"), guid + volume("Apple_HFS", "disk4s1", hfs, "hfs"));
  EXPECT_EQ(shaped("hfs-old-map"),
            entry("Apple_partition_scheme", "disk4", "Apple_partition_scheme") +
                entry("Apple_partition_map", "disk4s1", "5052544D-4150-11AA-AA11-00306543ECAC") +
                volume("Apple_HFS", "disk4s2", "Apple_HFS", "hfs"));
  EXPECT_EQ(shaped("efi"), guid + entry("EFI", "disk4s1", "C12A7328-F81F-11D2-BA4B-00A0C93EC93B") +
                               volume("Apple_HFS", "disk4s2", hfs, "hfs"));
  EXPECT_EQ(shaped("apfs"), guid + entry("Apple_APFS", "disk4s1", "Apple_APFS") +
                                entry(container, "disk5", container) + volume(apfs, "disk5s1", apfs, "apfs"));
  EXPECT_EQ(shaped("apfs-no-map"), "dev-entry=/dev/disk4 potentially-mountable=<false/>\n" +
                                       entry(container, "disk5", container) +
                                       volume(apfs, "disk5s1", apfs, "apfs"));
}

TEST_P(Hdiutil, listsItsEntriesInAnyOrder) {
  const std::string devices = "list I.dmg | grep -o '/dev/[a-z0-9]*' | tr '\\n' ' '";
  EXPECT_EQ(listed("told hdiutil 'shape efi'; " + devices), "/dev/disk4s2 /dev/disk4 /dev/disk4s1 ");
  EXPECT_EQ(listed("told hdiutil 'shape efi' 'order device'; " + devices),
            "/dev/disk4 /dev/disk4s1 /dev/disk4s2 ");
  EXPECT_EQ(listed("told hdiutil 'shape efi' 'order reversed'; " + devices),
            "/dev/disk4s2 /dev/disk4s1 /dev/disk4 ");
}

TEST_P(Hdiutil, mountsSeveralVolumesOfOneImage) {
  const Finished finished = imaged(
      "for i in $(seq 20); do mkdir \"in/Vol $i\"; echo $i >\"in/Vol $i/a\"; done; chmod u+w in/My*; rm -r "
      "in/My*; image "
      "I.dmg\n"
      "told hdiutil 'shape apfs' volumes; hdiutil attach I.dmg $at | grep -c /Volumes/; cat /Volumes/Vol*/a "
      "| sort "
      "-n | tail -1; status touch '/Volumes/Vol 7/b' 2>/dev/null; grep -c '^/dev/disk5s' /etc/mtab;"
      "hdiutil detach '/Volumes/Vol 20' && ls -A /Volumes /var/db/*disks");
  EXPECT_EQ(finished.out, "20\n20\n1\n20\n\"disk4\" ejected.\n/Volumes:\n\n/var/db/quarn-room-disks:\n")
      << finished.err;
}

TEST_P(Hdiutil, mountsNothingWhenTold) {
  EXPECT_EQ(
      listed("told hdiutil mounts-nothing; list I.dmg | grep -c -e mount-point -e volume-kind; ls /Volumes"),
      "0\n");
  EXPECT_EQ(
      listed("chmod u+w in/My*; rm -r in/My*; image I.dmg; told hdiutil volumes; status list I.dmg; ls -A "
             "/Volumes "
             "/var/db/*disks"),
      "hdiutil: attach failed - no mountable file systems\n1\n/Volumes:\n\n/var/db/quarn-room-disks:\n");
}

TEST_P(Hdiutil, takesTheNextNameWhenOneIsTaken) {
  const Finished finished = imaged(
      "cp I.dmg J.dmg; cp I.dmg K.dmg; mkdir /Volumes/VOLUME; touch '/Volumes/VOLUME 2'; for i in I J; do "
      "hdiutil "
      "attach $i.dmg $at; done | grep /Volumes/; hdiutil detach '/Volumes/VOLUME 3'; hdiutil attach K.dmg "
      "$at | "
      "grep /Volumes; ls /Volumes");
  EXPECT_EQ(finished.out,
            "\t\t\t<string>/Volumes/VOLUME 1</string>\n\t\t\t<string>/Volumes/VOLUME 3</string>\n"
            "\"disk5\" ejected.\n\t\t\t<string>/Volumes/VOLUME 3</string>\n"
            "VOLUME\nVOLUME 1\nVOLUME 2\nVOLUME 3\n");
}

TEST_P(Hdiutil, namesTheVolumeAfterTheImageWhereItHasNoNameOfItsOwn) {
  const Finished finished = imaged(
      "bsdtar -cf 'My \"own\" <b> & c:2\\n.dmg' --format zip -C in .; status hdiutil attach My*.dmg $at "
      ">list;"
      "grep Volumes list; told hdiutil 'name Told / Name'; mv My*.dmg J.dmg; hdiutil attach J.dmg $at | grep "
      "Volumes; ls /Volumes; for t in /Volumes/*; do hdiutil detach \"$t\"; done; ls /Volumes");
  EXPECT_EQ(finished.out,
            "\t\t\t<string>/Volumes/My \"own\" &lt;b&gt; &amp; c:2\\n</string>\n"
            "\t\t\t<string>/Volumes/Told : Name</string>\n"
            "My \"own\" <b> & c:2\\n\nTold : Name\n\"disk4\" ejected.\n\"disk5\" ejected.\n")
      << finished.err;
}

TEST_P(Hdiutil, saysWhyAnImageIsNotAttached) {
  const std::string failed = "hdiutil: attach failed - ";
  EXPECT_EQ(
      listed("echo garbage >G.dmg; : >E.dmg; touch P.dmg; chmod 0 P.dmg; head -c 1000000 /dev/urandom >in/r;"
             "bsdtar -cf C.dmg --format zip -C in .; head -c 500000 C.dmg >D.dmg;"
             "for i in N G E P D in; do [ -d $i ] || i=$i.dmg; status hdiutil attach $i $at; done;"
             "ls -A /Volumes /var/db/*disks"),
      failed + "No such file or directory\n1\n" + failed + "image not recognized\n1\n" + failed +
          "image not recognized\n1\n" + failed + "Permission denied\n1\n" + failed + "corrupt image\n1\n" +
          failed + "image not recognized\n1\n/Volumes:\n\n/var/db/quarn-room-disks:\n");
}

TEST_P(Hdiutil, handsBackWhatIsAttachedAlready) {
  EXPECT_EQ(listed("list I.dmg >one; ln -s I.dmg L; list L >two; cmp one two && ls /Volumes; told hdiutil "
                   "busy-when-attached; status hdiutil attach I.dmg $at"),
            "VOLUME\nhdiutil: attach failed - Resource busy\n1\n");
}

TEST_P(Hdiutil, givesTwoRunsAtOnceDisksAndNamesOfTheirOwn) {
  const Finished finished = imaged(
      "for i in 1 2 3 4; do cp I.dmg $i.dmg; hdiutil attach $i.dmg $at >list$i & done; wait; cat list? | "
      "grep -o "
      "'/Volumes/[^<]*' | sort; cat list? | grep -o '/dev/disk[0-9]*s' | sort");
  EXPECT_EQ(finished.out,
            "/Volumes/VOLUME\n/Volumes/VOLUME 1\n/Volumes/VOLUME 2\n/Volumes/VOLUME 3\n"
            "/dev/disk4s\n/dev/disk5s\n/dev/disk6s\n/dev/disk7s\n")
      << finished.err;
}

TEST_P(Hdiutil, isBusyWhenTold) {
  EXPECT_EQ(listed("told hdiutil 'busy unmount'; list I.dmg >list; status hdiutil detach /Volumes/VOLUME; ls "
                   "/Volumes; "
                   "status hdiutil detach /dev/disk4s1"),
            "hdiutil: couldn't unmount \"disk4\" - Resource busy\n16\nVOLUME\n\"disk4\" ejected.\n0\n");
  EXPECT_EQ(
      listed(
          "told hdiutil 'busy eject'; list I.dmg >list; status hdiutil detach /Volumes/VOLUME; ls /Volumes; "
          "status hdiutil detach /Volumes/VOLUME; status hdiutil detach /dev/disk4s1"),
      "hdiutil: couldn't eject \"disk4\" - Resource busy\n16\n"
      "hdiutil: detach failed - No such file or directory\n1\n\"disk4\" ejected.\n0\n");
}

TEST_P(Hdiutil, warnsBeforeEverythingOnANewMac) {
  const std::string warning =
      "hdiutil: WARNING: 'hdiutil attach -nobrowse -readonly ...' is deprecated. Please use 'diskutil image "
      "attach --mountOptions nobrowse --readOnly ...' instead.\n";
  EXPECT_EQ(imaged("told hdiutil warn-deprecated; hdiutil attach N.dmg $at").err,
            warning + "hdiutil: attach failed - No such file or directory\n");
  EXPECT_EQ(imaged("told hdiutil warn-deprecated 'fail 1 It broke.'; hdiutil attach I.dmg $at").err,
            warning + "It broke.\n");
  const Finished finished =
      imaged("told hdiutil warn-deprecated; hdiutil attach I.dmg $at; hdiutil detach disk4");
  EXPECT_EQ(finished.out.rfind("<?xml", 0), 0U);
  EXPECT_EQ(finished.err,
            warning +
                "hdiutil: WARNING: 'hdiutil detach ...' is deprecated. Please use 'diskutil eject "
                "...' instead.\n");
}

TEST_P(Hdiutil, asksForTheLicenceOnStandardInput) {
  const std::string asks =
      "Software Licence Agreement\nThe room takes no responsibility for anything.\n\nAgree Y/N? ";
  for (const std::string refusal : {"</dev/null", "<<<n", "<&-"}) {
    const Finished finished =
        imaged("told hdiutil licence; hdiutil attach I.dmg $at " + refusal + "; echo $?; ls /Volumes");
    EXPECT_EQ(finished.out, asks + "1\n") << refusal;
    EXPECT_NE(finished.err.find("hdiutil: attach canceled\n"), std::string::npos) << finished.err;
  }
  const Finished agreed = imaged("told hdiutil licence; hdiutil attach I.dmg $at <<<Y && ls /Volumes");
  EXPECT_EQ(agreed.out.rfind(asks + "<?xml", 0), 0U) << agreed.out;
  EXPECT_EQ(agreed.out.substr(agreed.out.size() - 16), "</plist>\nVOLUME\n");
}

TEST_P(Hdiutil, needsNothingOfTheEnvironment) {
  const Finished finished = imaged(
      "env -i /usr/bin/hdiutil attach I.dmg $at >list && ls /Volumes && env -i /usr/bin/hdiutil detach disk4 "
      "-quiet && ls "
      "/Volumes");
  EXPECT_EQ(finished.out, "VOLUME\n");
  EXPECT_EQ(finished.err, "");
}

TEST_P(Hdiutil, refusesWordsThatItDoesNotKnow) {
  EXPECT_EQ(listed("for w in 'attach I.dmg' 'attach I.dmg -plist -quick' 'attach -plist' 'detach -quiet' "
                   "'eject x'; do "
                   "status hdiutil $w 2>/dev/null; done"),
            "1\n1\n1\n1\n1\n");
}

}  // namespace quarn::tests
