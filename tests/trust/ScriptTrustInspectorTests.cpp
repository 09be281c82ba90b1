#include <gtest/gtest.h>
#include <sys/stat.h>

#include "QuarnCore/trust/TrustSummary.h"
#include "tests/support/Child.h"
#include "tests/support/Doubles.h"
#include "tests/support/Scene.h"

namespace quarn {
namespace {

using Lines = std::vector<std::string>;

const std::string script = "/Users/me/a 'b' \"c\"\n.sh";

TrustSummary inspectedFile() {
  return ScriptTrustInspector::inspect(hostPlatform(), Path(script));
}

TrustSummary inspected(const std::string& text) {
  scene::write(script, text);
  return inspectedFile();
}

/// So many lines that name nothing.
std::string lines(int count) {
  std::string text;
  for (int i = 1; i <= count; ++i) text += "line " + std::to_string(i) + "\n";
  return text;
}

TEST(ScriptTrust, anEmptyScriptHasNoLinesAndIsUntrusted) {
  EXPECT_EQ(inspected(""), (TrustSummary{"untrusted-script", {"Lines: 0"}, false, false}));
}

TEST(ScriptTrust, theFirstLineTheCountAndTheFirstReferenceAreTold) {
  EXPECT_EQ(inspected("#!/bin/sh\n\ncp -R a b\n \t/bin/cp x /Applications/ \t\nrm /Library/y\n"),
            (TrustSummary{"untrusted-script",
                          {"#!/bin/sh", "Lines: 4", "References: /bin/cp x /Applications/"},
                          true,
                          true}));
}

TEST(ScriptTrust, aFolderOfTheSystemOnLine50IsPrivilegedButNoReference) {
  EXPECT_EQ(inspected(lines(49) + "ls /Library/x\n"),
            (TrustSummary{"untrusted-script", {"line 1", "Lines: 50"}, true, true}));
}

TEST(ScriptTrust, line40IsTheLastThatIsLookedAtForReferences) {
  EXPECT_EQ(inspected(lines(39) + "ls /Library/x\n").details,
            (Lines{"line 1", "Lines: 40", "References: ls /Library/x"}));
  EXPECT_EQ(inspected(lines(40) + "ls /Library/x\n").details, (Lines{"line 1", "Lines: 41"}));
  EXPECT_EQ(inspected("\n\n" + lines(39) + "\n\nls /Library/x\n").details.size(), 3u)
      << "empty lines don't count";
}

TEST(ScriptTrust, applicationsWithoutASlashIsAReferenceButNotPrivileged) {
  EXPECT_EQ(inspected("cd /Applications\n"),
            (TrustSummary{"untrusted-script",
                          {"cd /Applications", "Lines: 1", "References: cd /Applications"},
                          true,
                          false}));
}

TEST(ScriptTrust, theseWordsArePrivilegedAnywhereInTheText) {
  for (const std::string word :
       {"/Applications/", "/Library/", "/usr/local/", "/private/", "sudo ", "$HOME/.", "~/."}) {
    EXPECT_TRUE(inspected("echo a\necho \"x" + word + "y\"\n").hasPrivilegedPayload) << word;
  }
  for (const std::string word : {"/applications/", "/Applications", "/LIBRARY/", "/usr/local", "sudo\tls",
                                 "SUDO ", "$HOME/x", "${HOME}/.", "~/x", "/privat/"}) {
    EXPECT_FALSE(inspected("echo a\necho \"x" + word + "\"\n").hasPrivilegedPayload) << word;
  }
}

TEST(ScriptTrust, everyKindOfLineEndSplits) {
  EXPECT_EQ(inspected("a\r\nb\rc\u2028d\n\n").details, (Lines{"a", "Lines: 4"}));
}

TEST(ScriptTrust, linesOfSpacesAreLinesAndTheFirstIsToldAsItStands) {
  EXPECT_EQ(inspected("  \n\t#!/bin/sh \n").details, (Lines{"  ", "Lines: 2"}));
  EXPECT_EQ(inspected("\n\n").details, Lines{"Lines: 0"});
  EXPECT_TRUE(inspected("\n\n").hasScripts) << "the text isn't empty";
}

TEST(ScriptTrust, aByteOrderMarkIsNoPartOfTheText) {
  EXPECT_EQ(inspected("\xEF\xBB\xBF#!/bin/sh\n").details.front(), "#!/bin/sh");
  EXPECT_FALSE(inspected("\xEF\xBB\xBF").hasScripts);
}

TEST(ScriptTrust, whatCannotBeReadAsTextIsEmpty) {
  const TrustSummary empty{"untrusted-script", {"Lines: 0"}, false, false};
  EXPECT_EQ(inspectedFile(), empty) << "missing";
  EXPECT_EQ(inspected("sudo \xFF\n"), empty);
  scene::shell("rm /Users/me/a*");
  scene::makeFolder(script);
  EXPECT_EQ(inspectedFile(), empty) << "a folder";
  scene::shell("rmdir /Users/me/a*");
  ASSERT_EQ(::mkfifo(script.c_str(), 0644), 0);
  EXPECT_EQ(inspectedFile(), empty) << "a FIFO that nobody writes to";
}

TEST(ScriptTrust, aScriptThatMayNotBeReadIsEmpty) {
  scene::write(script, "sudo ls\n");
  ::chmod(script.c_str(), 0);
  EXPECT_EQ(child::failuresWithoutRights([] { EXPECT_FALSE(inspectedFile().hasScripts); }), "");
}

TEST(ScriptTrust, aLinkIsFollowed) {
  scene::write("/Users/me/real", "sudo ls\n");
  scene::link(script, "/Users/me/real");
  EXPECT_TRUE(inspectedFile().hasPrivilegedPayload);
}

TEST(ScriptTrust, eightMegabytesAreLookedAtToTheirEnd) {
  const auto summary = inspected(std::string(8'000'000, 'x') + "\nsudo ls");
  EXPECT_TRUE(summary.hasPrivilegedPayload);
  EXPECT_EQ(summary.details.at(1), "Lines: 2");
}

}  // namespace
}  // namespace quarn
