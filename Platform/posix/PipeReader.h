#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "Platform/Processes.h"
#include "Platform/posix/Descriptor.h"

namespace quarn {

/// Reads several pipes at once, so that no writer has to wait until another pipe has been read.
class PipeReader {
 public:
  struct Source {
    Descriptor& pipe;  ///< closed when its end is reached
    const OutputSink& sink;
  };

  explicit PipeReader(std::vector<Source> sources);
  bool hasOpen() const;
  /// Waits until at least one chunk or the end of a pipe has been read, or the limit has passed. Without a
  /// limit it waits as long as it takes.
  void readSome(std::optional<std::chrono::milliseconds> limit);
  /// Reads what is in the pipes now. Never waits.
  void readWaiting();

 private:
  void closeAll();
  /// Returns false if there was nothing to read.
  bool readPiece(Source& source);

  std::vector<Source> sources_;
  std::vector<char> buffer_;
};

}  // namespace quarn
