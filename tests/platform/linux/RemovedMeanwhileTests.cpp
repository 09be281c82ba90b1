#include <cstdlib>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include "Platform/HostPlatform.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/linux/ChangingCalls.h"
#include "tests/support/linux/KilledAt.h"

namespace quarn {
namespace {

namespace fs = std::filesystem;

/// Removes a tree in a child, and calls `before` at each system call that the child is about to make.
/// Whether the removal was a success.
bool removesTree(const std::string& tree,
                 const std::function<void(const scene::TracedProgram&, const scene::CallStop&)>& before) {
  scene::TracedProgram program([&tree] {
    if (!hostPlatform().files.remove(Path(tree))) std::_Exit(1);
  });
  while (const auto stop = program.next()) {
    if (stop->op == PTRACE_SYSCALL_INFO_ENTRY) before(program, *stop);
  }
  return program.status() == 0;
}

TEST(RemovedMeanwhile, whatSomebodyElseRemovedJustBeforeIsPassedOver) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  ScratchFolder scratch;
  for (const char* name : {"tree/file", "tree/a/file", "tree/a/b/file"}) scratch.write(name);
  const std::string tree = scratch.at("tree");
  int overtaken = 0;
  EXPECT_TRUE(removesTree(tree, [&](const auto& program, const auto& stop) {
    const auto call = scene::callEntered(program, stop);
    if (call && call->name == "unlinkat" && call->paths[0] != tree) overtaken += fs::remove(call->paths[0]);
  }));
  EXPECT_EQ(overtaken, 5) << "three files and two folders";
  EXPECT_FALSE(scratch.stands("tree"));
}

TEST(RemovedMeanwhile, aFolderThatIsGoneBeforeItIsEnteredIsPassedOver) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  ScratchFolder scratch;
  scratch.write("tree/gone/inside");
  scratch.write("tree/kept/inside");
  int overtaken = 0;
  EXPECT_TRUE(removesTree(scratch.at("tree"), [&](const auto& program, const auto& stop) {
    if (stop.entry.nr != SYS_openat || program.textAt(stop.entry.args[1]) != "gone") return;
    fs::remove_all(scratch.at("tree/gone"));
    ++overtaken;
  }));
  EXPECT_EQ(overtaken, 1);
  EXPECT_FALSE(scratch.stands("tree"));
}

TEST(RemovedMeanwhile, aFolderThatIsGoneBeforeItIsReadIsPassedOver) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  ScratchFolder scratch;
  scratch.write("tree/gone/inside");
  scratch.write("tree/kept/inside");
  std::uintmax_t overtaken = 0;
  EXPECT_TRUE(removesTree(scratch.at("tree"), [&](const auto& program, const auto& stop) {
    if (stop.entry.nr != SYS_getdents64) return;
    if (program.pathOf(static_cast<int>(stop.entry.args[0])) != scratch.at("tree/gone")) return;
    overtaken += fs::remove_all(scratch.at("tree/gone"));
  }));
  EXPECT_EQ(overtaken, 2U) << "the folder and its file";
  EXPECT_FALSE(scratch.stands("tree"));
}

TEST(RemovedMeanwhile, theTopItselfIsMissed) {
  if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  ScratchFolder scratch;
  scratch.write("tree/file");
  const std::string tree = scratch.at("tree");
  EXPECT_FALSE(removesTree(tree, [&](const auto& program, const auto& stop) {
    const auto call = scene::callEntered(program, stop);
    if (call && call->name == "unlinkat" && call->paths[0] != tree) fs::remove_all(tree);
  }));
  EXPECT_FALSE(scratch.stands("tree"));
}

}  // namespace
}  // namespace quarn
