#include <filesystem>

#include "QuarnCore/move/JobRunner.h"
#include "tests/move/Moving.h"

namespace quarn {
namespace {

using namespace moving;

MoveJob supportJob(const std::string& folder = supportFolder) {
  MoveJob job;
  job.source = Path(support);
  job.destination = Path(folder + "/Foo");
  return job;
}

/// What a person would be told, "nothing" for success; `waits` counts the times that the run had to wait.
std::string carriedOut(const Platform& platform, const JobRunner::Run& run, const MoveJob& job,
                       int* waits = nullptr) {
  Platform mine = platform;
  const JobRunner::Listener listener{.waiting =
                                         [waits] {
                                           if (waits) ++*waits;
                                         },
                                     .status = [](const JobStatus&) {},
                                     .progress = {}};
  return thrown([&] { JobRunner::carryOut(mine, run, job, listener); });
}

JobRunner::Run begun(const std::string& mountPath = scene::drive) {
  return JobRunner::begin(hostPlatform(), Path(mountPath), false);
}

TEST(JobRunner, movesAnItemThatIsAsItWasPlanned) {
  scene::write(support + "/data", "data");
  EXPECT_EQ(carriedOut(hostPlatform(), begun(), supportJob()), "nothing");
  EXPECT_EQ(scene::target(support), movedSupport);
}

TEST(JobRunner, aJobWhoseDriveIsNotMountedMakesNoFolderInItsPlace) {
  scene::write(support + "/data", "the only copy");
  EXPECT_EQ(
      carriedOut(hostPlatform(), begun("/Volumes/Gone"), supportJob("/Volumes/Gone/ExternalQuarn/Data")),
      "The drive is no longer mounted: /Volumes/Gone");
  EXPECT_EQ(scene::read(support + "/data"), "the only copy");
  EXPECT_FALSE(scene::exists("/Volumes/Gone"));
}

TEST(JobRunner, aJobIsRefusedWhenAFolderStandsInThePlaceOfTheDriveThatWasChosen) {
  scene::write(support + "/data", "the only copy");
  // The drive was mounted as the run began; where the run looks for it now there is only a folder.
  JobRunner::Run run = begun();
  run.mountPath = Path("/Volumes/Left");
  scene::makeFolder("/Volumes/Left");
  EXPECT_EQ(carriedOut(hostPlatform(), run, supportJob("/Volumes/Left/ExternalQuarn/Data")),
            "The drive is no longer mounted: /Volumes/X9");
  EXPECT_EQ(scene::read(support + "/data"), "the only copy");
  EXPECT_FALSE(scene::exists("/Volumes/Left/ExternalQuarn"));
}

TEST(JobRunner, anItemThatIsALinkByNowIsRefusedBeforeTheMoveBegins) {
  scene::write("/elsewhere/data", "the only copy");
  scene::makeFolder(std::filesystem::path(support).parent_path());
  scene::link(support, "/elsewhere");
  EXPECT_EQ(carriedOut(hostPlatform(), begun(), supportJob()),
            "It has been moved since it was looked at: " + support);
  EXPECT_EQ(scene::read("/elsewhere/data"), "the only copy");
  EXPECT_FALSE(scene::exists(movedSupport));
}

/// Another run has the turn first, and moves the item before it gives the turn away.
class MovedMeanwhile : public Locks {
 public:
  Result<std::shared_ptr<Lock>> lock(const Path& folder, const std::function<void()>& waiting) override {
    if (!waited_) {
      waited_ = true;
      waiting();
      std::filesystem::rename(support, "/elsewhere");
      scene::link(support, "/elsewhere");
    }
    return hostPlatform().locks.lock(folder, [] {});
  }

 private:
  bool waited_ = false;
};

TEST(JobRunner, whoHadToWaitIsToldAndTheItemIsLookedAtOnlyThen) {
  scene::write(support + "/data", "the only copy");
  MovedMeanwhile locks;
  int waits = 0;
  EXPECT_EQ(carriedOut(replacing({.locks = &locks}), begun(), supportJob(), &waits),
            "It has been moved since it was looked at: " + support);
  EXPECT_EQ(waits, 1);
  EXPECT_EQ(scene::read("/elsewhere/data"), "the only copy");
  EXPECT_FALSE(scene::exists(movedSupport));
}

}  // namespace
}  // namespace quarn
