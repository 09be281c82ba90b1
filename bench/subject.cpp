// One service in a process of its own, so that its time and its peak of memory can be told from outside:
// bench-subject measure|size|measure-each PATH, bench-subject verify|copy SOURCE COPY, bench-subject running,
// bench-subject healthy|dead-links EXPECTED, bench-subject snapshot TREE EXPECTED,
// bench-subject snapshot-difference|list-difference COUNT, bench-subject look-up-and-read FOLDER….

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/foundation/SizingService.h"
#include "QuarnCore/health/DataLinkDetection.h"
#include "QuarnCore/health/HealthCheck.h"
#include "QuarnCore/move/MoveVerifier.h"
#include "bench/LookUpAndRead.h"
#include "bench/SnapshotTasks.h"

namespace {

/// A tool that has said nothing and succeeded.
class EndedChild : public quarn::Child {
 public:
  bool isRunning() override { return false; }
  int waitForExit() override { return 0; }
  void terminate() override {}
  void kill() override {}
  void readToEnd(const quarn::OutputSink&, const quarn::OutputSink&) override {}
  void readUntilExit(const quarn::OutputSink&, const quarn::OutputSink&) override {}
};

/// Starts nothing. To `codesign` and `stapler`, every bundle is in order.
class NoProcesses : public quarn::Processes {
 public:
  quarn::Result<std::unique_ptr<quarn::Child>> start(const quarn::Path&, const std::vector<std::string>&,
                                                     quarn::OutputStreams) override {
    return std::unique_ptr<quarn::Child>(std::make_unique<EndedChild>());
  }
  std::vector<int> lineage() const override { return {}; }
};

/// Checks the health without the tools that this starts. Returns whether every link was found healthy.
bool allHealthy(const quarn::Platform& host, int expected) {
  NoProcesses processes;
  const quarn::Platform platform{host.files, processes,   host.volumes, host.applications, host.trash,
                                 host.clock, host.places, host.locks,   host.databases,    host.events};
  const auto report = quarn::HealthCheck::run(platform, {quarn::Path("/Applications")});
  return report.healthyCount == expected && report.problems().empty();
}

bool findsDeadLinks(const quarn::Platform& platform, std::size_t expected) {
  return quarn::DanglingDataLinkDetector::detect(platform).size() == expected;
}

}  // namespace

int main(int count, char** values) {
  quarn::Platform& platform = quarn::hostPlatform();
  if (count == 3 && std::strcmp(values[1], "measure") == 0) {
    const auto bytes = quarn::SizingService::measure(platform, quarn::Path(values[2]));
    return std::printf("%lld\n", static_cast<long long>(bytes)) > 0 ? 0 : 1;
  }
  if (count == 3 && std::strcmp(values[1], "size") == 0) {
    const auto bytes = quarn::SizeCalculator::size(platform, quarn::Path(values[2]));
    return std::printf("%lld\n", static_cast<long long>(bytes)) > 0 ? 0 : 1;
  }
  if (count == 3 && std::strcmp(values[1], "measure-each") == 0) {
    std::int64_t bytes = 0;
    const quarn::Path folder(values[2]);
    for (const auto& name : platform.files.list(folder, quarn::Hidden::skipped).valueOr({})) {
      bytes += quarn::SizingService::measure(platform, folder.appending(name));
    }
    return std::printf("%lld\n", static_cast<long long>(bytes)) > 0 ? 0 : 1;
  }
  if (count == 4 && std::strcmp(values[1], "verify") == 0) {
    const auto reason =
        quarn::MoveVerifier::failureReason(platform, quarn::Path(values[2]), quarn::Path(values[3]));
    if (reason) std::fprintf(stderr, "%s\n", reason->c_str());
    return reason ? 1 : 0;
  }
  if (count == 4 && std::strcmp(values[1], "copy") == 0) {
    return platform.files.copy(quarn::Path(values[2]), quarn::Path(values[3])) ? 0 : 1;
  }
  if (count == 2 && std::strcmp(values[1], "running") == 0) {
    return quarn::RunningAppsDetector::bundlePaths(platform).empty() ? 1 : 0;
  }
  if (count == 3 && std::strcmp(values[1], "healthy") == 0) {
    return allHealthy(platform, std::atoi(values[2])) ? 0 : 1;
  }
  if (count == 3 && std::strcmp(values[1], "dead-links") == 0) {
    return findsDeadLinks(platform, std::strtoul(values[2], nullptr, 10)) ? 0 : 1;
  }
  if (count == 4 && std::strcmp(values[1], "snapshot") == 0) {
    return bench::capturesAll(platform, values[2], std::strtoul(values[3], nullptr, 10)) ? 0 : 1;
  }
  if (count == 3 && std::strcmp(values[1], "snapshot-difference") == 0) {
    return bench::timesDifference(std::strtoul(values[2], nullptr, 10)) ? 0 : 1;
  }
  if (count == 3 && std::strcmp(values[1], "list-difference") == 0) {
    return bench::timesMergeOfLists(std::strtoul(values[2], nullptr, 10)) ? 0 : 1;
  }
  if (count > 2 && std::strcmp(values[1], "look-up-and-read") == 0) {
    return bench::lookUpAndRead({values + 2, values + count}) > 0 ? 0 : 1;
  }
  return 2;
}
