#include <algorithm>

#include "Platform/HostPlatform.h"
#include "QuarnCore/health/DataLinkDetection.h"
#include "tests/support/Scene.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/LookingCalls.h"

namespace quarn {
namespace {

const std::string support = "/Users/me/Library/Application Support";

/// What the walk asks of the system, sorted, without the second of two equal lines.
std::vector<std::string> looks() {
  scene::TracedProgram program([] { DanglingDataLinkDetector::detect(hostPlatform()); });
  std::vector<std::string> lines;
  while (const auto stop = program.next()) {
    auto look = scene::lookEntered(program, *stop);
    if (look && look->find("/Users/") != std::string::npos) lines.push_back(*std::move(look));
  }
  EXPECT_EQ(program.status(), 0);
  std::sort(lines.begin(), lines.end());
  lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
  return lines;
}

TEST(DataLinkCalls, noFolderIsListedThatIsHiddenOrTooDeepAndNoItemIsLookedUpButLinks) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  for (const char* folder : {"Application Support/a/b/c/d/e", "Application Support/.hidden/x", "WebKit",
                             "Logs", "HTTPStorages", "Saved Application State"})
    scene::makeFolder(std::string("/Users/me/Library/") + folder);
  for (const char* file : {"/1", "/a/2", "/a/b/3", "/a/b/c/4", "/a/b/c/d/5"})
    scene::write(support + file, "x");
  scene::link(support + "/a/b/dead", "/Users/gone");
  scene::link(support + "/a/alive", "b");
  std::vector<std::string> expected = {
      "fstatat /Users/gone",
      "fstatat " + support + "/a/b",
      "readlinkat " + support + "/a/alive",
      "readlinkat " + support + "/a/b/dead",
  };
  for (const std::string& folder :
       {support, support + "/a", support + "/a/b", std::string("/Users/me/Library/WebKit"),
        std::string("/Users/me/Library/Logs"), std::string("/Users/me/Library/HTTPStorages"),
        std::string("/Users/me/Library/Saved Application State")}) {
    expected.push_back("openat " + folder);
    expected.push_back("getdents " + folder);
  }
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(looks(), expected);
}

}  // namespace
}  // namespace quarn
