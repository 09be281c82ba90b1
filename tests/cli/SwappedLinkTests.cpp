#include <filesystem>
#include <gtest/gtest.h>

#include "tests/cli/Campaign.h"
#include "tests/cli/Faults.h"
#include "tests/support/CampaignExtent.h"
#include "tests/support/linux/ChangingCalls.h"
#include "tests/support/linux/KilledAt.h"
#include "tests/support/linux/LookingCalls.h"

using namespace fault;
using campaign::Command;

/// While an item is copied, compared or removed, a folder inside it is put aside, and a link to a folder of
/// somebody else, which looks just like it, takes its place: right before each call that names the folder,
/// when what was found out about it is oldest, or, with QUARN_CAMPAIGN=all, before every call.

namespace {

namespace fs = std::filesystem;

class SwappedLink : public testing::TestWithParam<Command> {
 protected:
  void SetUp() override {
    if (const std::string reason = scene::whyNotTraced(); !reason.empty()) GTEST_SKIP() << reason;
  }

  const campaign::Item& item() const { return GetParam().items[0]; }
  bool comesHome() const {
    return GetParam().way == campaign::Way::home || GetParam().way == campaign::Way::launcher;
  }
  /// The side that is copied from, and removed.
  std::string source() const { return comesHome() ? item().destination : item().source; }
  /// On the same volume, so that a rename does.
  std::string aside() const { return fs::path(source()).parent_path() / "put aside"; }
  std::string inside() const { return GetParam().way == campaign::Way::path ? "Sub" : "Contents"; }

  static std::string callOf(const scene::TracedProgram& program, const scene::CallStop& stop) {
    const auto change = scene::callEntered(program, stop);
    return change ? change->text() : scene::lookEntered(program, stop).value_or("");
  }
  bool isMoment(const std::string& call) const {
    if (extent::isWhole()) return !call.empty();
    return call.ends_with("/" + inside());
  }

  /// On the same volume too: no removal goes on into another one, whatever leads there.
  std::string somebodys() const { return comesHome() ? "/Volumes/X9/Other/Folder" : "/Users/you/Folder"; }

  void swap() {
    const std::string folder = source() + "/" + inside();
    if (scene::isLink(source()) || !fs::is_directory(fs::symlink_status(folder))) return;
    fs::rename(folder, aside() + "/" + inside());
    fs::create_directory_symlink(somebodys(), folder);
    ++swaps_;
  }

  /// Right before the n-th call of any kind. False with fewer calls.
  bool swapAt(int n) {
    campaign::Trial trial(GetParam());
    fs::copy(source() + "/" + inside(), somebodys(),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    fs::create_directories(aside());
    const auto theirs = scene::tree(somebodys());
    const auto files = contents(source());
    scene::TracedProgram program(GetParam().words());
    std::string met;
    int count = 0;
    while (const auto stop = program.next()) {
      const std::string call = callOf(program, *stop);
      if (!isMoment(call) || ++count != n) continue;
      met = call;
      swap();
    }
    if (met.empty()) return false;
    EXPECT_EQ(scene::tree(somebodys()), theirs) << "swapped at call " << n << ", " << met << "\n"
                                                << program.said();
    const std::vector<std::string> places = {item().source, item().destination, aside(),
                                             scene::driveTrash() + "/Foo 2.app"};
    EXPECT_EQ(lost(files, places), std::vector<std::string>{})
        << "swapped at call " << n << ", " << met << "\n"
        << program.said();
    return true;
  }

  int swaps_ = 0;
};

std::vector<Command> oneOfEachWay() {
  std::map<campaign::Way, Command> found;
  for (const Command& command : campaign::commands()) found.try_emplace(command.way, command);
  std::vector<Command> ways;
  for (const auto& [way, command] : found) ways.push_back(command);
  return ways;
}

INSTANTIATE_TEST_SUITE_P(Moves, SwappedLink, testing::ValuesIn(oneOfEachWay()),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(SwappedLink, leadsNoRunOutsideItsItem) {
  int n = 1;
  while (swapAt(n)) ++n;
  EXPECT_GT(swaps_, 0);
}

}  // namespace
