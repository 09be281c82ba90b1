#include <cstdio>
#include <gtest/gtest.h>

#include "QuarnCore/installer/DiskImageMounter.h"
#include "tests/support/Child.h"
#include "tests/support/FakeTools.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Words = std::vector<std::string>;

const std::string image = "/Users/me/Foo.dmg";
const std::string deprecated =
    "hdiutil: WARNING: 'hdiutil attach -plist -nobrowse -readonly ...' is deprecated. Please use 'diskutil "
    "image "
    "attach --mountOptions nobrowse --readOnly ...' instead.\n";

std::string list(const std::string& root) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n" +
         root + "\n</plist>\n";
}

std::string entities(const std::string& entries) {
  return list("<dict><key>system-entities</key><array>" + entries + "</array></dict>");
}

/// An entry as `hdiutil` prints it; a mount point only for what is mounted.
std::string entry(const std::string& hint, const std::string& device, const std::string& mountPoint = "") {
  std::string text = "<dict><key>content-hint</key><string>" + hint + "</string>";
  text += "<key>dev-entry</key><string>" + device + "</string>";
  if (!mountPoint.empty()) text += "<key>mount-point</key><string>" + mountPoint + "</string>";
  text += mountPoint.empty() ? "<key>potentially-mountable</key><false/>"
                             : "<key>potentially-mountable</key><true/>";
  return text + "<key>unmapped-content-hint</key><string></string></dict>";
}

std::vector<Path> paths(const Words& texts) {
  return {texts.begin(), texts.end()};
}

struct DiskImage : testing::Test {
  doubles::FakeTools tools;
  doubles::FakeTools::Answer& attaching = tools.answers["/usr/bin/hdiutil attach "];

  DiskImageMount attached(const std::string& path = image) {
    return DiskImageMounter::attach(tools.platform(), Path(path));
  }
  void expectMount(const std::string& answer, const Words& mountPoints, const Words& devices) {
    attaching = {0, answer, ""};
    EXPECT_EQ(attached(), (DiskImageMount{image, paths(mountPoints), devices})) << answer;
  }
  PlatformError failure() {
    try {
      attached();
    } catch (const PlatformError& error) {
      return error;
    }
    return {"none", 0, "nothing"};
  }
  void expectFailure(const std::string& domain, int code, const std::string& description) {
    const PlatformError error = failure();
    EXPECT_EQ(error.domain, domain);
    EXPECT_EQ(error.code, code);
    EXPECT_EQ(error.description, description);
    EXPECT_EQ(error.localizedDescription(), description);
  }
};

TEST_F(DiskImage, isAttachedWithTheseWords) {
  for (const std::string odd :
       {"/Users/me/Foo.dmg", "/Users/me/a b \"c\" 'd' $e;*.dmg", "/Users/me/line\nfeed.dmg",
        "/Users/me/-plist", "/Users/me/Caf\u00E9.dmg", "/Users/me/Cafe\u0301.dmg"}) {
    tools.calls.clear();
    attaching.output = entities("");
    EXPECT_EQ(attached(odd).imagePath, odd);
    EXPECT_EQ(tools.calls,
              (std::vector<Words>{{"/usr/bin/hdiutil", "attach", odd, "-plist", "-nobrowse", "-readonly"}}));
  }
}

TEST_F(DiskImage, anImageWithAPartitionMapHasOneVolume) {
  expectMount(entities(entry("GUID_partition_scheme", "/dev/disk4") +
                       entry("Apple_HFS", "/dev/disk4s1", "/Volumes/Foo")),
              {"/Volumes/Foo"}, {"/dev/disk4", "/dev/disk4s1"});
  expectMount(
      entities(entry("Apple_partition_scheme", "/dev/disk4") + entry("Apple_partition_map", "/dev/disk4s1") +
               entry("Apple_HFS", "/dev/disk4s2", "/Volumes/Foo 1")),
      {"/Volumes/Foo 1"}, {"/dev/disk4", "/dev/disk4s1", "/dev/disk4s2"});
}

TEST_F(DiskImage, theEntriesStandInAnyOrder) {
  expectMount(entities(entry("Apple_HFS", "/dev/disk18s1", "/Volumes/Foo") +
                       entry("GUID_partition_scheme", "/dev/disk18")),
              {"/Volumes/Foo"}, {"/dev/disk18s1", "/dev/disk18"});
}

TEST_F(DiskImage, inAPFSThereAreTheDevicesOfTwoDisks) {
  expectMount(
      entities(entry("Apple_APFS", "/dev/disk4s1") +
               entry("41504653-0000-11AA-AA11-00306543ECAC", "/dev/disk5s1", "/Volumes/Foo") +
               entry("GUID_partition_scheme", "/dev/disk4") +
               entry("EF57347C-0000-11AA-AA11-00306543ECAC", "/dev/disk5") + entry("EFI", "/dev/disk4s2")),
      {"/Volumes/Foo"}, {"/dev/disk4s1", "/dev/disk5s1", "/dev/disk4", "/dev/disk5", "/dev/disk4s2"});
}

TEST_F(DiskImage, twentyVolumesHaveTheOrderOfTheAnswer) {
  std::string entries;
  Words mountPoints;
  Words devices;
  for (int i = 20; i > 0; --i) {
    devices.push_back("/dev/disk4s" + std::to_string(i));
    mountPoints.push_back("/Volumes/Foo " + std::to_string(i));
    entries += entry("Apple_HFS", devices.back(), mountPoints.back());
  }
  expectMount(entities(entries), mountPoints, devices);
}

TEST_F(DiskImage, namesOfVolumesAreKeptToTheByte) {
  expectMount(entities(entry("Apple_HFS", "/dev/disk4s1", "/Volumes/a &amp; b &lt;\"c\"&gt; 'd'\n\te") +
                       entry("Apple_HFS", "/dev/disk4s2", "/Volumes/Caf\u00E9") +
                       entry("Apple_HFS", "/dev/disk4s3", "/Volumes/Cafe\u0301")),
              {"/Volumes/a & b <\"c\"> 'd'\n\te", "/Volumes/Caf\u00E9", "/Volumes/Cafe\u0301"},
              {"/dev/disk4s1", "/dev/disk4s2", "/dev/disk4s3"});
}

TEST_F(DiskImage, anImageThatMountsNothingHasDevicesAlone) {
  expectMount(entities(entry("GUID_partition_scheme", "/dev/disk4") + entry("EFI", "/dev/disk4s1")), {},
              {"/dev/disk4", "/dev/disk4s1"});
}

TEST_F(DiskImage, anEntryWithOneOfTheTwoCountsInOneList) {
  expectMount(entities("<dict><key>mount-point</key><string>/Volumes/Foo</string></dict>"
                       "<dict><key>dev-entry</key><string>/dev/disk4</string></dict><dict/>"),
              {"/Volumes/Foo"}, {"/dev/disk4"});
}

TEST_F(DiskImage, whatIsNoTextInAnEntryDoesNotCount) {
  expectMount(entities("<dict><key>mount-point</key><array><string>/Volumes/Foo</string></array>"
                       "<key>dev-entry</key><integer>4</integer></dict>" +
                       entry("Apple_HFS", "/dev/disk5", "/Volumes/Bar")),
              {"/Volumes/Bar"}, {"/dev/disk5"});
}

TEST_F(DiskImage, anyOtherShapeOfTheAnswerHasNoEntries) {
  const std::string good = entry("Apple_HFS", "/dev/disk4s1", "/Volumes/Foo");
  for (const std::string& other :
       {list("<dict/>"), list("<array>" + good + "</array>"), list("<string>system-entities</string>"),
        list(good), list("<dict><key>system-entities</key>" + good + "</dict>"),
        list("<dict><key>system-entities</key><string>/Volumes/Foo</string></dict>"),
        list("<dict><key>System-Entities</key><array>" + good + "</array></dict>"), entities(""),
        entities(good + "<string>/Volumes/Bar</string>"), entities("<array>" + good + "</array>" + good),
        std::string(" \n")}) {
    expectMount(other, {}, {});
  }
}

TEST_F(DiskImage, anAnswerThatIsNoPropertyListIsThrownAsSuch) {
  const std::string whole = entities(entry("Apple_HFS", "/dev/disk4s1", "/Volumes/Foo"));
  for (const std::string& answer :
       {std::string(), std::string("/dev/disk4  GUID_partition_scheme\n"), whole.substr(0, whole.size() / 2),
        "LICENCE\nAgree Y/N? " + whole, std::string("bplist00 cut")}) {
    attaching = {0, answer, "some warning"};
    expectFailure("NSCocoaErrorDomain", 3840,
                  "The data couldn’t be read because it isn’t in the correct format.");
  }
}

TEST_F(DiskImage, aFailureIsToldInTheWordsOfTheTool) {
  for (const std::string reason : {"hdiutil: attach failed - no mountable file systems\n",
                                   "hdiutil: attach failed - image not recognized\n",
                                   "hdiutil: attach failed - Fichier ou répertoire introuvable\n",
                                   "hdiutil: attach failed - Authentication error\n"}) {
    attaching = {1, entities(entry("Apple_HFS", "/dev/disk4s1", "/Volumes/Foo")), reason};
    expectFailure("hdiutil", 1, reason);
  }
}

TEST_F(DiskImage, aDeprecationWarningStandsBeforeTheReasonAndHarmsNoAnswer) {
  attaching = {1, "", deprecated + "hdiutil: attach failed - Resource busy\n"};
  expectFailure("hdiutil", 1, deprecated + "hdiutil: attach failed - Resource busy\n");
  attaching = {0, entities(entry("Apple_HFS", "/dev/disk4s1", "/Volumes/Foo")), deprecated};
  EXPECT_EQ(attached().mountPoints, paths({"/Volumes/Foo"}));
}

TEST_F(DiskImage, aFailureWithoutWordsIsToldByItsNumber) {
  attaching = {16, "", ""};
  expectFailure("hdiutil", 16, "The operation couldn’t be completed. (hdiutil error 16.)");
}

TEST_F(DiskImage, withoutTheToolTheReasonIsThat) {
  tools.answers.clear();
  expectFailure("hdiutil", 127, "The file “hdiutil” doesn’t exist.");
}

TEST_F(DiskImage, attachingAndDetachingHaveNoTimeLimit) {
  attaching = {.output = entities(""), .hangs = true};
  attached();
  tools.answers["/usr/bin/hdiutil detach "] = {.status = 16, .hangs = true};
  DiskImageMounter::detach(tools.platform(), {image, paths({"/Volumes/Foo"}), {"/dev/disk4"}});
  EXPECT_EQ(tools.secondsWaited(), 0) << "nobody looked at the clock";
}

/// The targets of the detaching, in their order.
struct Detaching : DiskImage {
  Words targets(const Words& mountPoints, const Words& devices) {
    tools.calls.clear();
    DiskImageMounter::detach(tools.platform(), {image, paths(mountPoints), devices});
    Words found;
    for (const Words& call : tools.calls) {
      if (call.size() != 4 || call[0] + " " + call[1] + " " + call[3] != "/usr/bin/hdiutil detach -quiet") {
        return {"other words"};
      }
      found.push_back(call[2]);
    }
    return found;
  }
};

TEST_F(Detaching, stopsAtTheFirstMountPointThatSucceeds) {
  tools.answers["/usr/bin/hdiutil detach "] = {};
  EXPECT_EQ(targets({"/Volumes/a b", "/Volumes/c"}, {"/dev/disk4"}), (Words{"/Volumes/a b"}));
}

TEST_F(Detaching, goesOnToTheOtherMountPointsAndThenToTheDevices) {
  tools.answers["/usr/bin/hdiutil detach "] = {16, "", "hdiutil: couldn't eject \"disk4\" - Resource busy\n"};
  const Words all = {"/Volumes/a", "/Volumes/b", "/dev/disk4s1", "/dev/disk5", "/dev/disk4"};
  EXPECT_EQ(targets({"/Volumes/a", "/Volumes/b"}, {"/dev/disk4s1", "/dev/disk5", "/dev/disk4"}), all);
  tools.answers["/usr/bin/hdiutil detach /dev/disk5"] = {0, "\"disk5\" ejected.\n", ""};
  EXPECT_EQ(targets({"/Volumes/a", "/Volumes/b"}, {"/dev/disk4s1", "/dev/disk5", "/dev/disk4"}),
            Words(all.begin(), all.end() - 1));
}

TEST_F(Detaching, usesTheDevicesWhereNothingIsMounted) {
  tools.answers["/usr/bin/hdiutil detach "] = {};
  EXPECT_EQ(targets({}, {"/dev/disk4", "/dev/disk4s1"}), (Words{"/dev/disk4"}));
  EXPECT_EQ(targets({}, {}), Words{});
}

TEST_F(Detaching, neverThrowsEvenWithoutTheTool) {
  tools.answers.clear();
  EXPECT_EQ(targets({"/Volumes/a"}, {"/dev/disk4"}), (Words{"/Volumes/a", "/dev/disk4"}));
}

void hdiutil(const std::string& script) {
  scene::replaceTool("/usr/bin/hdiutil", "#!/bin/sh\n" + script + "\n");
}

std::string reallyAttached() {
  return thrown([] { DiskImageMounter::attach(hostPlatform(), Path(image)); });
}

TEST(RealHdiutil, aFloodIsReadToItsEnd) {
  scene::write("/Users/me/list", entities(entry("Apple_HFS", "/dev/disk4s1", "/Volumes/Foo")));
  hdiutil(
      "head -c 8000000 /dev/zero | tr '\\0' x >&2; cat /Users/me/list; head -c 8000000 /dev/zero | tr '\\0' "
      "'\\n'");
  EXPECT_EQ(DiskImageMounter::attach(hostPlatform(), Path(image)).mountPoints, paths({"/Volumes/Foo"}));
}

TEST(RealHdiutil, aToolKilledByASignalHasFailed) {
  hdiutil("kill -KILL $$");
  EXPECT_EQ(reallyAttached(), "The operation couldn’t be completed. (hdiutil error 9.)");
}

TEST(RealHdiutil, whatIsNoTextIsNoAnswerAndNoReason) {
  hdiutil("printf '<plist><dict><key>\\377</key></dict></plist>'");
  EXPECT_EQ(reallyAttached(), "The data couldn’t be read because it isn’t in the correct format.");
  hdiutil("printf 'cut \\303' >&2; exit 1");
  EXPECT_EQ(reallyAttached(), "The operation couldn’t be completed. (hdiutil error 1.)");
}

/// An image with a licence, with what there is to read on standard input.
std::string attachedWithLicence(const std::string& input) {
  scene::write("/Users/me/input", input);
  scene::write("/Users/me/list", entities(entry("Apple_HFS", "/dev/disk4s1", "/Volumes/Foo")));
  hdiutil(
      "printf 'LICENCE\\nAgree Y/N? '; read -r answer\n"
      "[ \"$answer\" = y ] && exec cat /Users/me/list\n"
      "echo 'hdiutil: attach canceled' >&2; exit 1");
  return child::failures([] {
    ASSERT_NE(std::freopen("/Users/me/input", "r", stdin), nullptr);
    FAIL() << reallyAttached();
  });
}

TEST(RealHdiutil, aLicenceIsAskedForOnOurStandardInputAndItsEndCancels) {
  EXPECT_NE(attachedWithLicence("").find("hdiutil: attach canceled\n"), std::string::npos);
  EXPECT_NE(attachedWithLicence("n\n").find("hdiutil: attach canceled\n"), std::string::npos);
}

TEST(RealHdiutil, aLicenceThatIsAcceptedStandsBeforeTheAnswer) {
  EXPECT_NE(attachedWithLicence("y\n").find("isn’t in the correct format."), std::string::npos);
}

}  // namespace
}  // namespace quarn
