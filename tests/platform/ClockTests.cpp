#include <chrono>

#include "Platform/HostPlatform.h"
#include "tests/platform/Subject.h"
#include "tests/support/Doubles.h"

namespace quarn::contract {
namespace {

using namespace std::chrono_literals;
using ClockSubject = Subject<quarn::Clock>;

std::shared_ptr<quarn::Clock> theHosts() {
  return notOwned(hostPlatform().clock);
}
std::shared_ptr<quarn::Clock> fake() {
  return std::make_shared<doubles::FakeClock>();
}

class Clock : public testing::TestWithParam<ClockSubject> {
 protected:
  quarn::Clock& clock() const { return *clock_; }

 private:
  std::shared_ptr<quarn::Clock> clock_ = GetParam().make();
};
INSTANTIATE_TEST_SUITE_P(, Clock,
                         testing::Values(ClockSubject{"Host", theHosts}, ClockSubject{"FakeClock", fake}),
                         nameOf<ClockSubject>);

TEST_P(Clock, sleepsAndCounts) {
  const auto before = clock().steadyNow();
  clock().sleep(30ms);
  EXPECT_GE(clock().steadyNow() - before, 30ms);
}

TEST_P(Clock, neverGoesBack) {
  auto last = clock().steadyNow();
  for (int i = 0; i < 1000; ++i) {
    const auto now = clock().steadyNow();
    EXPECT_GE(now, last);
    last = now;
  }
}

TEST_P(Clock, tellsAMomentToCome) {
  const auto begin = clock().steadyNow();
  const auto moment = clock().after(1.5);
  EXPECT_GE(moment - begin, 1500ms);
  EXPECT_LE(moment - clock().steadyNow(), 1500ms);
}

TEST(HostClock, knowsTheCalendar) {
  EXPECT_GT(hostPlatform().clock.now().time_since_epoch(), 24h * 365 * 50);
}

}  // namespace
}  // namespace quarn::contract
