#include <type_traits>

#include "Platform/HostPlatform.h"

// The compiler is the test: a change made through the view that only looks must not compile. Each question is
// put to the whole platform too, so that a misspelt one is noticed.

namespace quarn {
namespace {

template <class P>
concept CanRemove = requires(P& platform, const Path& item) {
  platform.files.remove(item);
};
template <class P>
concept CanCreateFolders = requires(P& platform, const Path& item) {
  platform.files.createFolder(item);
};
template <class P>
concept CanLink = requires(P& platform, const Path& item) {
  platform.files.createSymbolicLink(item, "");
};
template <class P>
concept CanRemoveLinks = requires(P& platform, const Path& item) {
  platform.files.removeSymbolicLink(item);
};
template <class P>
concept CanClaim = requires(P& platform, const Path& item) {
  platform.files.claim(item, FileKind::folder);
};
template <class P>
concept CanRename = requires(P& platform, const Path& item) {
  platform.files.rename(item, item);
};
template <class P>
concept CanCopy = requires(P& platform, const Path& item) {
  platform.files.copy(item, item);
};
template <class P>
concept CanCopyAttributes = requires(P& platform, const Path& item) {
  platform.files.copyAttributes(item, item);
};
template <class P>
concept CanWrite = requires(P& platform, const Path& item) {
  platform.files.writeAtomically(item, "");
};
template <class P>
concept CanFlush = requires(P& platform, const Path& item) {
  platform.files.flush(item);
};
template <class P>
concept CanTrash = requires(P& platform, const Path& item) {
  platform.trash.moveToTrash(item);
};
template <class P>
concept CanLock = requires(P& platform, const Path& item) {
  platform.locks.lock(item, [] {});
};
template <class P>
concept CanWriteDatabases = requires(P& platform, const Path& file) {
  platform.databases.openForWriting(file);
};
template <class P>
concept CanEndApplications = requires(P& platform, const RunningApplication& application) {
  platform.applications.terminate(application);
  platform.applications.forceTerminate(application);
};

template <class P>
constexpr bool canChange =
    CanRemove<P> || CanCreateFolders<P> || CanLink<P> || CanRemoveLinks<P> || CanClaim<P> || CanRename<P> ||
    CanCopy<P> || CanCopyAttributes<P> || CanWrite<P> || CanFlush<P> || CanTrash<P> || CanLock<P> ||
    CanWriteDatabases<P> || CanEndApplications<P>;
template <class P>
constexpr bool canMakeEveryChange = CanRemove<P>&& CanCreateFolders<P>&& CanLink<P>&& CanRemoveLinks<P>&&
    CanClaim<P>&& CanRename<P>&& CanCopy<P>&& CanCopyAttributes<P>&& CanWrite<P>&& CanFlush<P>&& CanTrash<P>&&
        CanLock<P>&& CanWriteDatabases<P>&& CanEndApplications<P>;
template <class P>
concept CanLook = requires(P& platform, const Path& item, WalkVisitor& visitor) {
  platform.files.attributes(item);
  platform.files.walk(item, Hidden::included, visitor);
  platform.files.read(item);
  platform.volumes.mounted();
  platform.applications.running();
  platform.databases.openForReading(item);
  platform.processes.start(item, {}, OutputStreams::separate);
  platform.places.home();
};

static_assert(canMakeEveryChange<Platform>);
static_assert(!canChange<ReadOnlyPlatform>);
static_assert(!canChange<const ReadOnlyPlatform>);
static_assert(CanLook<Platform> && CanLook<const ReadOnlyPlatform>);

static_assert(std::is_convertible_v<Platform&, ReadOnlyPlatform>, "the whole converts by itself");
static_assert(!std::is_constructible_v<Platform, ReadOnlyPlatform>, "and there is no way back");

TEST(ReadOnlyPlatform, answersAsTheWholeDoes) {
  EXPECT_EQ(&ReadOnlyPlatform(hostPlatform()).files, &hostPlatform().files);
  EXPECT_EQ(&ReadOnlyPlatform(hostPlatform()).databases, &hostPlatform().databases);
}

}  // namespace
}  // namespace quarn
