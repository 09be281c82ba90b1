#include <gtest/gtest.h>

#include "QuarnCLI/dispatch/QuarnCLI.h"
#include "tests/cli/Faults.h"
#include "tests/support/Decorators.h"
#include "tests/support/Replacing.h"

using namespace fault;

namespace quarn {
namespace {

/// Removes nothing, for one and the same reason.
class Keeping : public GuardedFileSystem {
 public:
  Keeping(FileSystem& inner, PlatformError reason) : GuardedFileSystem(inner), reason_(std::move(reason)) {}

 protected:
  Result<void> before(const std::string& operation) override {
    if (operation.starts_with("remove")) return reason_;
    return {};
  }

 private:
  PlatformError reason_;
};

/// What a person is told when `move back Foo` meets the failure.
std::string told(const std::string& domain, int code) {
  Keeping files(hostPlatform().files, PlatformError(domain, code, "the system's words"));
  Platform platform = replacing({.files = &files});
  const QuarnCLI cli{.arguments = {"move", "back", "Foo"}, .program = "./quarn"};
  return thrown([&] { cli.run(platform); });
}

TEST(SudoAdvice, isGivenForTwoNumbersOfOneDomainAndForNoOtherFailure) {
  scene::makeApp(moved);
  scene::link(app, moved);
  const std::string advice =
      "Permission denied moving back Foo.app.\nRe-run under sudo:\n  sudo \"./quarn\" move back \"Foo\"";
  EXPECT_EQ(told(cocoaErrorDomain, 513), advice);
  EXPECT_EQ(told(cocoaErrorDomain, 4), advice);
  for (const int code : {1, 257, 260, 512, 516, 640, 642, -4}) {
    EXPECT_EQ(told(cocoaErrorDomain, code), "the system's words") << code;
  }
  for (const int code : {4, 13, 513}) EXPECT_EQ(told("POSIX", code), "the system's words") << code;
  EXPECT_EQ(scene::target(app), moved);
}

}  // namespace
}  // namespace quarn
