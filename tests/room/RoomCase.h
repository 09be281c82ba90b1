#pragma once

#include <gtest/gtest.h>
#include <sstream>

#include "TestRoom.h"
#include "tests/support/Sanitized.h"

namespace quarn::tests {

/// A case that runs in every kind of room, with the stand-ins for the Mac's tools.
class RoomCase : public testing::TestWithParam<Way> {
 protected:
  void SetUp() override {
    const std::string reason = room.whyNot();
    if (!reason.empty()) GTEST_SKIP() << reason;
    const Finished finished = room("echo $QUARN_ROOM");
    ASSERT_EQ(finished.out, GetParam() == Way::proot ? "proot\n" : "mounts\n") << finished.err;
  }

  /// Runs a script that may say
  ///   app PATH           an application with a main executable, a resource and a link
  ///   package PATH [ID]  a flat package of the folders `payload` and `scripts`, as far as they are there
  ///   product PATH PACKAGE…  a product archive of such packages, with `Resources`, if there is such a folder
  ///   pack PATH          the same, or the package, once more, from what is in the folder `members` by now
  ///   sign PATH KIND     signs a package
  ///   told TOOL LINE…    orders for a stand-in
  ///   status COMMAND…    the same, followed by a line with its exit status on standard output
  Finished play(const std::string& script) const { return room(prelude + script); }

  /// Standard output of such a script, to which standard error is joined.
  std::string says(const std::string& script) const { return play("exec 2>&1\n" + script).out; }

  TestRoom room{GetParam()};

 private:
  static const std::string prelude;
};

inline const auto everyWay = testing::Values(Way::mounts, Way::userNamespace, Way::proot);

/// For the stand-ins that are scripts. In these a sanitizer finds nothing to look at, so built with one they
/// are run in one kind of room.
inline const auto everyWayOfScripts = testing::ValuesIn(
    isSanitized ? std::vector{Way::mounts} : std::vector{Way::mounts, Way::userNamespace, Way::proot});

inline std::string nameOf(const testing::TestParamInfo<Way>& way) {
  std::ostringstream name;
  name << way.param;
  return name.str();
}

inline bool hasBsdtar() {
  return ::access("/usr/bin/bsdtar", X_OK) == 0;
}

}  // namespace quarn::tests
