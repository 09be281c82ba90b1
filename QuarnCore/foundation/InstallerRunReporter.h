#pragma once

#include <functional>
#include <string>

namespace quarn {

/// Receives the steps of an installation or a repair, each as a line of fields that are separated by tabs.
/// The first field is the word of the step.
struct InstallerRunReporter {
  std::function<void(const std::string& line)> sink = {};  ///< if empty, the reporter is silent
  /// Called once if another run has to end first (see `Turn`).
  std::function<void()> waiting = [] {};

  static InstallerRunReporter silent() { return {}; }
  void log(const std::string& line) const {
    if (sink) sink(line);
  }
};

}  // namespace quarn
