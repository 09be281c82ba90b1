#pragma once

#include <memory>
#include <string>

#include "QuarnCore/foundation/InstallerRunReporter.h"

namespace quarn {

/// Tells the steps of an installation on standard error as they come. After two seconds without a new line,
/// and each further second, it tells how long ago the last one was: a copy, a tool or a script can take long.
class InstallProgress {
 public:
  /// Each line begins with `prefix`.
  explicit InstallProgress(std::string prefix);
  ~InstallProgress();
  InstallProgress(const InstallProgress&) = delete;
  InstallProgress& operator=(const InstallProgress&) = delete;

  /// Returns a reporter that must not outlive this.
  InstallerRunReporter reporter();
  /// Returns a reporter that tells nothing but that another run has to end first.
  static InstallerRunReporter quiet();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quarn
