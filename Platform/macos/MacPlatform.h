#pragma once

#include "Platform/Applications.h"
#include "Platform/FileEvents.h"
#include "Platform/Trash.h"
#include "Platform/Volumes.h"
#include "Platform/posix/PosixFileSystem.h"
#include "Platform/posix/PosixPlatform.h"

namespace quarn {

class MacFileSystem : public PosixFileSystem {
 public:
  Result<Path> realPath(const Path& path) const override;
  Path standardized(const Path& path) const override;
};

class MacVolumes : public Volumes {
 public:
  Result<std::vector<Path>> mounted() const override;
  Result<std::vector<Path>> mountPoints() const override;
  Result<VolumeProperties> properties(const Path& item) const override;
};

class MacApplications : public Applications {
 public:
  std::vector<RunningApplication> running() const override;
  void terminate(const RunningApplication& application) override;
  void forceTerminate(const RunningApplication& application) override;
  void wait(std::chrono::milliseconds duration) override;
};

class MacPlaces : public PosixPlaces {
 public:
  Path home() const override;
  std::optional<Path> home(const std::string& user) const override;
  Path executable() const override;
  std::string invokedAs() const override;
  Path temporaryFolder() const override;
};

class MacTrash : public Trash {
 public:
  Result<Path> moveToTrash(const Path& item) override;
};

class MacFileEvents : public FileEvents {
 public:
  std::unique_ptr<FileEventStream> watch(const std::vector<Path>& roots, FileEventSink sink) const override;
};

}  // namespace quarn
