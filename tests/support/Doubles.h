#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "Platform/HostPlatform.h"

/// Answers of the system that a test decides.
namespace quarn::doubles {

/// Time that passes only when somebody sleeps.
class FakeClock : public Clock {
 public:
  Moment now() const override { return moment; }
  std::chrono::steady_clock::time_point steadyNow() const override { return steady; }
  void sleep(std::chrono::milliseconds duration) override {
    steady += duration;
    ++sleeps;
  }
  double seconds() const { return std::chrono::duration<double>(steady.time_since_epoch()).count(); }

  Moment moment{};
  std::chrono::steady_clock::time_point steady{};
  int sleeps = 0;
};

/// Mount points in the order given; a path without properties can't be read.
class FakeVolumes : public Volumes {
 public:
  Result<std::vector<Path>> mounted() const override {
    if (!listable) return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "no list");
    return order;
  }
  /// What is mounted is so in truth; only what the volumes tell of themselves is decided.
  Result<std::vector<Path>> mountPoints() const override { return hostPlatform().volumes.mountPoints(); }
  Result<VolumeProperties> properties(const Path& item) const override {
    const auto found = known.find(item.text());
    if (found == known.end())
      return PlatformError(cocoaErrorDomain, CocoaErrorCode::fileReadUnknown, "unknown");
    return found->second;
  }
  void add(const std::string& path, const VolumeProperties& volume) {
    order.emplace_back(path);
    known[path] = volume;
  }

  bool listable = true;
  std::vector<Path> order;
  std::map<std::string, VolumeProperties> known;
};

/// Refuses everything, as a volume without a Trash does, and counts how often it was asked.
class RefusingTrash : public Trash {
 public:
  Result<Path> moveToTrash(const Path&) override {
    ++asked;
    return PlatformError(cocoaErrorDomain, CocoaErrorCode::featureUnsupported, "no Trash here");
  }
  int asked = 0;
};

/// Running applications that end when they are told to, some time after it or never. Waiting lets the
/// clock go on.
class FakeApplications : public Applications {
 public:
  struct Instance {
    RunningApplication application;
    std::optional<double> endsAfterTerminate;  ///< seconds; absent: refuses to
    std::optional<double> endsAfterForce;
    std::optional<double> endsAt;  ///< on the clock
  };

  explicit FakeApplications(FakeClock& clock) : clock_(clock) {}

  std::vector<RunningApplication> running() const override {
    std::vector<RunningApplication> list;
    for (const Instance& instance : instances) {
      if (!instance.endsAt || clock_.seconds() < *instance.endsAt) list.push_back(instance.application);
    }
    return list;
  }
  void terminate(const RunningApplication& application) override {
    terminated.push_back(application.processIdentifier);
    end(application, &Instance::endsAfterTerminate);
  }
  void forceTerminate(const RunningApplication& application) override {
    forced.push_back(application.processIdentifier);
    end(application, &Instance::endsAfterForce);
  }
  void wait(std::chrono::milliseconds duration) override {
    waits.push_back(duration);
    clock_.sleep(duration);
  }

  std::vector<Instance> instances;
  std::vector<int> terminated;
  std::vector<int> forced;
  std::vector<std::chrono::milliseconds> waits;

 private:
  void end(const RunningApplication& application, std::optional<double> Instance::*after) {
    for (Instance& instance : instances) {
      if (instance.application == application && instance.*after) {
        instance.endsAt = clock_.seconds() + *(instance.*after);
      }
    }
  }
  FakeClock& clock_;
};

/// Places of the test's choice.
class FakePlaces : public Places {
 public:
  explicit FakePlaces(Path home = Path("/Users/me")) : homeFolder(std::move(home)) {}

  Path home() const override { return homeFolder; }
  std::optional<Path> home(const std::string& user) const override {
    const auto found = homesOfOthers.find(user);
    return found == homesOfOthers.end() ? std::nullopt : std::optional(found->second);
  }
  Path currentFolder() const override { return current; }
  Path executable() const override { return program; }
  std::string invokedAs() const override { return firstArgument; }
  Path temporaryFolder() const override { return temporary; }
  std::optional<std::string> environment(const std::string& name) const override {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  }

  Path homeFolder;
  std::map<std::string, Path> homesOfOthers;
  Path current{"/"};
  Path program{"/usr/local/bin/quarn"};
  std::string firstArgument = "/usr/local/bin/quarn";
  Path temporary{"/tmp"};
  std::map<std::string, std::string> variables;
};

}  // namespace quarn::doubles
