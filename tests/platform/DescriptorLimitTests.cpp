#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Platform/HostPlatform.h"
#include "tests/support/Child.h"
#include "tests/support/DeepTree.h"
#include "tests/support/Scene.h"
#include "tests/support/ScratchFolder.h"

namespace quarn {
namespace {

constexpr int depth = 500;
constexpr std::size_t items = 2 * depth;

FileSystem& files() {
  return hostPlatform().files;
}

/// Counts; a failure is told as an expectation that doesn't hold.
struct Counter : WalkVisitor {
  WalkStep visit(const WalkItem&) override {
    ++count;
    return WalkStep::proceed;
  }
  WalkStep failed(const Path&, const PlatformError& error) override {
    ADD_FAILURE() << error.description;
    return WalkStep::stop;
  }
  std::size_t count = 0;
};

/// At the deepest place of its walk it begins another one.
struct Nested : Counter {
  explicit Nested(const Path& tree) : tree_(tree) {}
  WalkStep visit(const WalkItem& item) override {
    if (count == items - 1) files().walk(tree_, Hidden::included, inner);
    return Counter::visit(item);
  }
  Counter inner;

 private:
  const Path& tree_;
};

std::string failuresWithDescriptors(rlim_t most, const std::function<void()>& body) {
  return child::failures([&] {
    const rlimit limit{most, most};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    body();
  });
}

class DescriptorLimit : public testing::TestWithParam<rlim_t> {
 protected:
  void SetUp() override {
    if (scene::inProot()) GTEST_SKIP() << "proot takes minutes over so deep a tree";
    scratch.folder("tree");
    makeDeepTree(scratch.at("tree"), depth);
  }
  void TearDown() override {
    for (const char* tree : {"tree", "copy"}) files().remove(scratch / tree).orIgnore();
  }
  ScratchFolder scratch;
};

// A shell on a Mac grants 256 descriptors; the smaller number leaves room for what else is open.
INSTANTIATE_TEST_SUITE_P(, DescriptorLimit, testing::Values(64, 256));

TEST_P(DescriptorLimit, twoWalksOfADeepTreeAtOnceKeepToIt) {
  const Path tree = scratch / "tree";
  EXPECT_EQ(failuresWithDescriptors(GetParam(),
                                    [&] {
                                      Nested walk(tree);
                                      files().walk(tree, Hidden::included, walk);
                                      EXPECT_EQ(walk.count, items);
                                      EXPECT_EQ(walk.inner.count, items);
                                    }),
            "");
}

TEST_P(DescriptorLimit, aCopyOfADeepTreeKeepsToIt) {
  EXPECT_EQ(failuresWithDescriptors(GetParam(),
                                    [&] {
                                      const auto copied = files().copy(scratch / "tree", scratch / "copy");
                                      EXPECT_TRUE(copied) << copied.error().description;
                                      EXPECT_TRUE(files().remove(scratch / "tree"));
                                    }),
            "");
  EXPECT_EQ(scratch.count(), items + 1);
}

}  // namespace
}  // namespace quarn
