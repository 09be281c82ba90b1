#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "Platform/Processes.h"
#include "Platform/posix/Descriptor.h"

namespace quarn {

/// Reads several pipes at once, so that none of their writers waits for us to read another.
class PipeReader {
 public:
  struct Source {
    Descriptor& pipe;  ///< closed at its end
    const OutputSink& sink;
  };

  explicit PipeReader(std::vector<Source> sources);
  bool hasOpen() const;
  /// Waits for one piece at least, a pipe's end, or the limit. No limit: as long as it takes.
  void readSome(std::optional<std::chrono::milliseconds> limit);
  /// What has been written by now; never waits.
  void readWaiting();

 private:
  void closeAll();
  /// False if nothing was there to be read.
  bool readPiece(Source& source);

  std::vector<Source> sources_;
  std::vector<char> buffer_;
};

}  // namespace quarn
