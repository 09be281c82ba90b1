// mdutil -s, and lsregister -f.

#include "RoomCase.h"

namespace quarn::tests {

namespace {

class Index : public RoomCase {};

INSTANTIATE_TEST_SUITE_P(Way, Index, everyWayOfScripts, nameOf);

const std::string lsregister =
    "/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/"
    "lsregister";

}  // namespace

TEST_P(Index, isEnabledOnEveryVolumeUnlessTold) {
  const Finished finished = play(
      "mkdir '/Volumes/A b'; for v in /System/Volumes/Data / '/Volumes/A b'; do status mdutil -s \"$v\"; "
      "done");
  EXPECT_EQ(finished.out,
            "/System/Volumes/Data:\n\tIndexing enabled.\n0\n/:\n\tIndexing enabled.\n0\n"
            "/Volumes/A b:\n\tIndexing enabled.\n0\n");
  EXPECT_EQ(finished.err, "");
}

TEST_P(Index, isInTheStateThatWasTold) {
  for (const std::string state : {"Indexing disabled.", "Indexing and searching disabled.",
                                  "Index is read-only. ", "No index.", "Spotlight server is disabled.",
                                  "Error: unexpected indexing state.  kMDConfigSearchLevelTransitioning"})
    EXPECT_EQ(says("told mdutil 'on /System/* state " + state +
                   "'; status mdutil -s /System/Volumes/Data; "
                   "status mdutil -s /"),
              "/System/Volumes/Data:\n\t" + state + "\n0\n/:\n\tIndexing enabled.\n0\n");
}

TEST_P(Index, existsOnVolumesOnly) {
  EXPECT_EQ(says("status mdutil -s /Volumes/Nothing"), "Error: invalid path `/Volumes/Nothing'.\n1\n");
  EXPECT_EQ(says("status mdutil -s"), "Usage: mdutil -s volume ...\n1\n");
}

TEST_P(Index, ofApplicationsCanBeReadBack) {
  EXPECT_EQ(says("app 'My app.app'; app B.app; status " + lsregister + " -f /Users/me/My*; status " +
                 lsregister + " -f B.app 'My app.app'; cat /var/db/quarn-room-registered"),
            "0\n0\n/Users/me/My app.app\nB.app\nMy app.app\n");
}

TEST_P(Index, ofApplicationsTakesBundlesOnly) {
  EXPECT_EQ(
      says("mkdir A.app; for p in A.app nothing; do status " + lsregister +
           " -f $p; done; ls /var/db/quarn-room-registered 2>/dev/null; status " + lsregister + " -dump"),
      "lsregister: failed to register A.app: -10811\n1\n"
      "lsregister: failed to register nothing: -10811\n1\n"
      "lsregister: usage: lsregister -f <path>...\n1\n");
}

}  // namespace quarn::tests
