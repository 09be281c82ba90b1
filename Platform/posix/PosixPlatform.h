#pragma once

#include <map>

#include "Platform/Clock.h"
#include "Platform/Databases.h"
#include "Platform/Locks.h"
#include "Platform/Places.h"
#include "Platform/Processes.h"

namespace quarn {

class PosixProcesses : public Processes {
 public:
  Result<std::unique_ptr<Child>> start(const Path& executable, const std::vector<std::string>& arguments,
                                       OutputStreams streams) override;
  std::vector<int> lineage() const override;
};

class SystemClock : public Clock {
 public:
  Moment now() const override;
  std::chrono::steady_clock::time_point steadyNow() const override;
  void sleep(std::chrono::milliseconds duration) override;
};

/// Locks folders with flock(2). The kernel releases such a lock when its descriptor is closed. Use it from
/// one thread only.
class FolderLocks : public Locks {
 public:
  Result<std::shared_ptr<Lock>> lock(const Path& folder, const std::function<void()>& waiting) override;

 private:
  // Weak, so that this map doesn't keep a lock alive.
  std::map<std::string, std::weak_ptr<Lock>> held_;
};

/// What is the same on every system.
class PosixPlaces : public Places {
 public:
  Path currentFolder() const override;
  std::optional<std::string> environment(const std::string& name) const override;
};

class SQLiteDatabases : public Databases {
 public:
  std::unique_ptr<Database> openForReading(const Path& file) const override;
  std::unique_ptr<Database> openForWriting(const Path& file) override;
};

}  // namespace quarn
