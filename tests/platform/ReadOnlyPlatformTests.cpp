#include <gtest/gtest.h>
#include <type_traits>

#include "Platform/HostPlatform.h"

// The compiler is the test: a change made through the view that only looks must not compile. Each question is
// put to the whole platform too, so that a misspelt one is noticed.

namespace quarn {
namespace {

using Application = RunningApplication;

/// How many of the ways to change the world compile.
template <class P>
constexpr int waysToChange = requires(P& p, Path item) {
  p.files.remove(item);
}
+ requires(P& p, Path item) {
  p.files.createFolder(item);
}
+ requires(P& p, Path item) {
  p.files.createSymbolicLink(item, "");
}
+ requires(P& p, Path item) {
  p.files.removeSymbolicLink(item);
}
+ requires(P& p, Path item) {
  p.files.claim(item, FileKind::folder);
}
+ requires(P& p, Path item) {
  p.files.rename(item, item);
}
+ requires(P& p, Path item) {
  p.files.copy(item, item);
}
+ requires(P& p, Path item) {
  p.files.copyAttributes(item, item);
}
+ requires(P& p, Path item) {
  p.files.writeAtomically(item, "");
}
+ requires(P& p, Path item) {
  p.files.setPermissions(item, 0755);
}
+ requires(P& p, Path item) {
  p.files.flush(item);
}
+ requires(P& p, Path item) {
  p.trash.moveToTrash(item);
}
+ requires(P& p, Path item) {
  p.locks.lock(item, [] {});
}
+ requires(P& p, Path file) {
  p.databases.openForWriting(file);
}
+ requires(P& p, Application ours) {
  p.applications.terminate(ours);
}
+ requires(P& p, Application ours) {
  p.applications.forceTerminate(ours);
};

template <class P>
concept CanLook = requires(P& platform, const Path& item, WalkVisitor& visitor) {
  platform.files.attributes(item);
  platform.files.walk(item, Hidden::included, visitor);
  platform.files.walkSorted(item, Hidden::included, visitor);
  platform.files.read(item);
  platform.volumes.mounted();
  platform.applications.running();
  platform.databases.openForReading(item);
  platform.processes.start(item, {}, OutputStreams::separate);
  platform.places.home();
};

static_assert(waysToChange<Platform> == 16);
static_assert(waysToChange<ReadOnlyPlatform> == 0);
static_assert(waysToChange<const ReadOnlyPlatform> == 0);
static_assert(CanLook<Platform> && CanLook<const ReadOnlyPlatform>);

static_assert(std::is_convertible_v<Platform&, ReadOnlyPlatform>, "the whole converts by itself");
static_assert(!std::is_constructible_v<Platform, ReadOnlyPlatform>, "and there is no way back");

TEST(ReadOnlyPlatform, answersAsTheWholeDoes) {
  EXPECT_EQ(&ReadOnlyPlatform(hostPlatform()).files, &hostPlatform().files);
  EXPECT_EQ(&ReadOnlyPlatform(hostPlatform()).databases, &hostPlatform().databases);
}

}  // namespace
}  // namespace quarn
