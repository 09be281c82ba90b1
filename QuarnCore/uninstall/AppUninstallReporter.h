#pragma once

#include <functional>
#include <string>

#include "QuarnCore/uninstall/AppUninstallSession.h"

namespace quarn {

/// Receives the steps of an uninstall, each after it was tried, as a line of fields that are separated by
/// tabs. The first field is the word of the step.
struct AppUninstallReporter {
  std::function<void(const std::string& line)> log = [](const std::string&) {};
  /// Receives sentences about items that aren't in the Trash.
  std::function<void(const std::string& sentence)> warn = [](const std::string&) {};
  /// Called before a run throws because its record can't be written: nothing else tells where the items are.
  std::function<void(const AppUninstallSession& session)> unrecorded = [](const AppUninstallSession&) {};

  static AppUninstallReporter silent() { return {}; }
  /// Logs a step that concerns one item.
  void logStep(const std::string& word, const AppUninstallSession::MovedItem& item) const {
    log(word + "\t" + std::string(rawValue(item.category)) + "\t" + item.originalPath);
  }
  /// Logs that an item stays, and warns of it.
  void logKept(const AppUninstallSession::MovedItem& item, const std::string& reason) const {
    warn("“" + item.originalPath + "” stays. " + reason);
    log("keep\t" + std::string(rawValue(item.category)) + "\t" + item.originalPath + "\t" + reason);
  }
};

}  // namespace quarn
