#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Platform/HostPlatform.h"
#include "QuarnCore/installer/InstallerKind.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

InstallerKind detect(const Path& path) {
  return InstallerKinds::detect(hostPlatform(), path);
}

/// The kind of a file without an extension that holds these bytes.
InstallerKind kindOf(const std::string& content) {
  ScratchFolder scratch;
  scratch.write("file", content);
  return detect(scratch / "file");
}

TEST(InstallerKind, isToldByTheExtensionInAnyLetterCase) {
  const std::pair<const char*, InstallerKind> rows[] = {
      {"Foo.app", InstallerKind::app},       {"Foo.APP", InstallerKind::app},
      {"Foo.dmg", InstallerKind::dmg},       {"Foo.Zip", InstallerKind::zip},
      {"Setup.PKG", InstallerKind::pkg},     {"Setup.mpkg", InstallerKind::mpkg},
      {"a.sh", InstallerKind::script},       {"a.bash", InstallerKind::script},
      {"a.command", InstallerKind::script},  {"a.ZSH", InstallerKind::script},
      {"a.fish", InstallerKind::unknown},    {"a.txt", InstallerKind::unknown},
      {"a", InstallerKind::unknown},         {".pkg", InstallerKind::unknown},
      {"Foo.app.zip", InstallerKind::zip},   {"a b.p kg", InstallerKind::unknown},
      {"Caf\u00E9.dmg", InstallerKind::dmg}, {"line\nfeed.pkg", InstallerKind::pkg},
  };
  // Nothing of these exists: the disk isn't looked at.
  for (const auto& [name, kind] : rows) EXPECT_EQ(detect(Path("/nowhere").appending(name)), kind) << name;
}

TEST(InstallerKind, ofAFileWithoutAKnownExtensionIsToldByItsFirstBytes) {
  EXPECT_EQ(kindOf("#!/bin/sh\n"), InstallerKind::script);
  EXPECT_EQ(kindOf("#!/usr/bin/python3\nprint(1)"), InstallerKind::script);
  EXPECT_EQ(kindOf("#!"), InstallerKind::script);
  EXPECT_EQ(kindOf("\xEF\xBB\xBF#!/bin/sh"), InstallerKind::script) << "a byte-order mark is no text";
  EXPECT_EQ(kindOf(""), InstallerKind::unknown);
  EXPECT_EQ(kindOf("#"), InstallerKind::unknown);
  EXPECT_EQ(kindOf(" #!/bin/sh"), InstallerKind::unknown);
  EXPECT_EQ(kindOf("echo 1"), InstallerKind::unknown);
  EXPECT_EQ(kindOf("#!/bin/sh \xFF"), InstallerKind::unknown) << "not UTF-8";
}

TEST(InstallerKind, looksAtTheFirst256BytesOnly) {
  const std::string start = "#!/bin/sh\n" + std::string(244, 'x');
  ASSERT_EQ(start.size(), 254u);
  EXPECT_EQ(kindOf(start + "xx\xFF"), InstallerKind::script) << "what comes behind isn't looked at";
  EXPECT_EQ(kindOf(start + "x\xFF"), InstallerKind::unknown);
  EXPECT_EQ(kindOf(start + "\u00E9 more"), InstallerKind::script);
  EXPECT_EQ(kindOf(start + "x\u00E9 more"), InstallerKind::unknown) << "cut within a character";
}

TEST(InstallerKind, ofWhatCannotBeReadIsUnknown) {
  ScratchFolder scratch;
  scratch.folder("folder");
  ASSERT_EQ(::mkfifo(scratch.at("fifo").c_str(), 0600), 0);
  scratch.link("dangling", "nowhere");
  for (const char* name : {"folder", "fifo", "dangling", "missing"})
    EXPECT_EQ(detect(scratch / name), InstallerKind::unknown) << name;
}

TEST(InstallerKind, aLinkToAScriptIsAScript) {
  ScratchFolder scratch;
  scratch.write("script", "#!/bin/sh\n");
  scratch.link("link", "script");
  EXPECT_EQ(detect(scratch / "link"), InstallerKind::script);
}

}  // namespace
}  // namespace quarn
