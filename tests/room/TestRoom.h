#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "Started.h"
#include "tests/support/ScratchFolder.h"

namespace quarn::tests {

enum class Way { mounts, userNamespace, proot };
std::ostream& operator<<(std::ostream& out, Way way);

/// quarn-room, copied to where any user can start it, made one way.
class TestRoom {
 public:
  explicit TestRoom(Way way);

  /// Why this way is closed on this machine; empty when it is open.
  std::string whyNot() const;

  Finished operator()(const std::string& script, std::vector<std::string> options = {}) const;
  Started start(const std::string& script, std::vector<std::string> options = {}) const;

  /// What the process that starts quarn-room does first.
  void goThisWay() const;

  std::string program() const { return folder_.at("quarn-room"); }

 private:
  Way way_;
  ScratchFolder folder_{"/tmp"};
};

/// Folders of rooms below the usual temporary folders that no living room holds.
std::vector<std::string> abandonedRooms();

/// The processes of this machine whose command line contains `text`, but for this one.
std::vector<pid_t> processesWith(const std::string& text);

}  // namespace quarn::tests
