#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include "TestRoom.h"

namespace quarn::tests {

namespace fs = std::filesystem;

namespace {

const char* quarantine = "user.com.apple.quarantine";

class Xattr : public testing::Test {
  const ScratchFolder scratch{"/var/tmp"};

 protected:
  fs::path top = scratch.at("top"), outside = scratch.at("outside");

  void SetUp() override {
    fs::create_directory(top);
    fs::create_directory(outside);
    if (::setxattr(top.c_str(), quarantine, "q", 1, 0) != 0)
      GTEST_SKIP() << "the volume of /var/tmp keeps no extended attributes";
  }
  void make(const fs::path& file) const {
    std::ofstream(file) << "content";
    mark(file);
  }
  void mark(const fs::path& item) const {
    ASSERT_EQ(::setxattr(item.c_str(), quarantine, "q", 1, 0), 0);
    ASSERT_EQ(::setxattr(item.c_str(), "user.other", "o", 1, 0), 0);
  }
  bool isMarked(const fs::path& item) const {
    return ::getxattr(item.c_str(), quarantine, nullptr, 0) >= 0 ||
           ::getxattr(item.c_str(), "user.other", nullptr, 0) >= 0;
  }
  Finished xattr() const { return run({QUARN_XATTR, "-cr", top.string()}); }
};

}  // namespace

TEST_F(Xattr, clearsAnItemAndAllBelowIt) {
  fs::create_directory(top / "a folder");
  make(top / "a folder" / ".hidden");
  mark(top / "a folder");
  const Finished finished = xattr();
  EXPECT_EQ(finished.status, 0) << finished.err;
  for (const fs::path& item : {top, top / "a folder", top / "a folder" / ".hidden"})
    EXPECT_FALSE(isMarked(item)) << item;
}

TEST_F(Xattr, clearsWhatALinkLeadsToAndEntersNoLink) {
  make(outside / "file");
  make(outside / "other");
  mark(outside);
  fs::create_symlink(outside / "file", top / "to file");
  fs::create_directory_symlink(outside, top / "to folder");
  EXPECT_EQ(xattr().status, 0);
  EXPECT_FALSE(isMarked(outside / "file"));
  EXPECT_FALSE(isMarked(outside));
  EXPECT_TRUE(isMarked(outside / "other"));
}

TEST_F(Xattr, namesALinkThatLeadsNowhereAndGoesOn) {
  fs::create_symlink("nowhere", top / "link");
  make(top / "a");
  make(top / "z");
  const Finished finished = xattr();
  EXPECT_EQ(finished.status, 1);
  EXPECT_EQ(finished.err, "xattr: No such file: " + (top / "link").string() + "\n");
  EXPECT_FALSE(isMarked(top / "a") || isMarked(top / "z"));
}

TEST_F(Xattr, needsItsWords) {
  EXPECT_EQ(run({QUARN_XATTR, "-d", "x", top.string()}).status, 64);
  EXPECT_EQ(run({QUARN_XATTR, "-cr"}).status, 64);
}

}  // namespace quarn::tests
