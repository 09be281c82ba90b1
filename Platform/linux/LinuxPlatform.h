#pragma once

#include "Platform/Applications.h"
#include "Platform/FileEvents.h"
#include "Platform/Trash.h"
#include "Platform/Volumes.h"
#include "Platform/posix/PosixFileSystem.h"
#include "Platform/posix/PosixPlatform.h"

namespace quarn {

class LinuxFileSystem : public PosixFileSystem {
 public:
  Result<Path> realPath(const Path& path) const override;
  Path standardized(const Path& path) const override;
};

class LinuxVolumes : public Volumes {
 public:
  Result<std::vector<Path>> mounted() const override;
  Result<std::vector<Path>> mountPoints() const override;
  Result<VolumeProperties> properties(const Path& item) const override;
};

class LinuxApplications : public Applications {
 public:
  std::vector<RunningApplication> running() const override;
  void terminate(const RunningApplication& application) override;
  void forceTerminate(const RunningApplication& application) override;
  void wait(std::chrono::milliseconds duration) override;
};

class LinuxPlaces : public PosixPlaces {
 public:
  Path home() const override;
  std::optional<Path> home(const std::string& user) const override;
  Path executable() const override;
  std::string invokedAs() const override;
  Path temporaryFolder() const override;
};

class LinuxTrash : public Trash {
 public:
  explicit LinuxTrash(const Places& places) : places_(places) {}
  Result<Path> moveToTrash(const Path& item) override;

 private:
  const Places& places_;
};

class LinuxFileEvents : public FileEvents {
 public:
  std::unique_ptr<FileEventStream> watch(const std::vector<Path>& roots, FileEventSink sink) const override;
};

}  // namespace quarn
