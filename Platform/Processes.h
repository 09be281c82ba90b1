#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// Where a tool's output goes. A tool always inherits our standard input, environment and current folder.
enum class OutputStreams {
  separate,   ///< one pipe for standard output and another for standard error
  joined,     ///< both into the pipe for standard output
  inherited,  ///< our own standard output and standard error
};

/// Receives output as it arrives; a chunk may end in the middle of a character.
using OutputSink = std::function<void(std::string_view)>;

/// A tool that has been started. The destructor closes our ends of its pipes; it neither waits for the tool
/// nor kills it.
class Child {
 public:
  virtual ~Child() = default;

  virtual bool isRunning() = 0;
  /// Blocks until the tool has ended. Returns its exit status, or the number of the signal that killed it.
  virtual int waitForExit() = 0;
  /// Asks the tool itself, but none of its children, to end (SIGTERM).
  virtual void terminate() = 0;
  /// Kills the tool itself, but none of its children (SIGKILL).
  virtual void kill() = 0;
  /// Passes on what is written until both pipes reach their end, that is, until every process that holds them
  /// has closed them. May run on another thread than the operations above.
  virtual void readToEnd(const OutputSink& output, const OutputSink& error) = 0;
  /// Works like `readToEnd`, but returns as soon as the tool itself has ended, even if another process still
  /// holds a pipe.
  virtual void readUntilExit(const OutputSink& output, const OutputSink& error) = 0;
};

/// Starts tools by absolute path, without a shell and without searching `PATH`.
class Processes {
 public:
  virtual ~Processes() = default;

  /// Starts a tool in a process group of its own, with no descriptor above 2. A tool that is missing, isn't a
  /// regular file or isn't executable: `fileNoSuchFile`.
  virtual Result<std::unique_ptr<Child>> start(const Path& executable,
                                               const std::vector<std::string>& arguments,
                                               OutputStreams streams) = 0;

  /// Returns the identifiers of this process and of its ancestors, this one first.
  virtual std::vector<int> lineage() const = 0;
};

}  // namespace quarn
