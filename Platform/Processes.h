#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Path.h"
#include "Platform/Result.h"

namespace quarn {

/// Where a tool's output goes. Its standard input, environment and working folder are always ours.
enum class OutputStreams {
  separate,   ///< a pipe for standard output, another for standard error
  joined,     ///< both on the pipe of standard output
  inherited,  ///< ours
};

/// Takes bytes as they come; a piece may end in the middle of a character.
using OutputSink = std::function<void(std::string_view)>;

/// A tool that has been started. Destroying it closes our ends of its pipes; it waits for nothing and
/// kills nothing.
class Child {
 public:
  virtual ~Child() = default;

  virtual bool isRunning() = 0;
  /// Blocks until it has ended. Its exit status, or the number of the signal that killed it.
  virtual int waitForExit() = 0;
  /// Asks that one process, and none of its children, to end (SIGTERM).
  virtual void terminate() = 0;
  /// SIGKILL, likewise.
  virtual void kill() = 0;
  /// Hands over what is written until both pipes are at their end, which is when every process that
  /// holds them has closed them. May run on another thread than the operations above.
  virtual void readToEnd(const OutputSink& output, const OutputSink& error) = 0;
  /// Like `readToEnd`, but returns as soon as the tool itself has ended, whoever still holds a pipe.
  virtual void readUntilExit(const OutputSink& output, const OutputSink& error) = 0;
};

/// Starting tools: by absolute path, without a shell and without a search of `PATH`.
class Processes {
 public:
  virtual ~Processes() = default;

  /// The tool gets a process group of its own and no descriptor above 2. A tool that is missing, no
  /// file or not executable can't be started: `fileNoSuchFile`.
  virtual Result<std::unique_ptr<Child>> start(const Path& executable,
                                               const std::vector<std::string>& arguments,
                                               OutputStreams streams) = 0;

  /// The identifiers of this process and of those that started it, this one first.
  virtual std::vector<int> lineage() const = 0;
};

}  // namespace quarn
