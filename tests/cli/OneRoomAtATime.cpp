#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include "tests/support/Scene.h"

namespace {

/// Rooms that need no rights share the machine's list of processes, so the command line of a move in
/// one of them makes the same application look running in all others. There the cases take turns.
class OneRoomAtATime : public testing::Environment {
 public:
  void SetUp() override {
    if (scene::hasMounts()) return;
    lock_ = ::open("/usr/local/bin/quarn", O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(lock_, LOCK_EX), 0);
  }
  void TearDown() override {
    if (lock_ >= 0) ::close(lock_);
  }

 private:
  int lock_ = -1;
};

[[maybe_unused]] const testing::Environment* const turns =
    testing::AddGlobalTestEnvironment(new OneRoomAtATime);

}  // namespace
