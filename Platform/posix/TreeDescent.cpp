#include "Platform/posix/TreeDescent.h"

#include <string>
#include <vector>

namespace quarn {
namespace {

/// The folders that are still to be entered. The names of all levels are in one text, the innermost level
/// last, so that a deep tree needs no allocation per folder.
class PendingFolders {
 public:
  void beginLevel() { begins_.push_back(names_.size()); }
  void add(const char* name) { names_.append(name).push_back('\0'); }
  /// Takes one name. Returns false, and ends the level, if the level has none left.
  bool take(std::string& name) {
    if (names_.size() == begins_.back()) {
      begins_.pop_back();
      return false;
    }
    const std::size_t previous = names_.rfind('\0', names_.size() - 2);
    const std::size_t begin = previous == std::string::npos ? 0 : previous + 1;
    name.assign(names_, begin, names_.size() - 1 - begin);
    names_.resize(begin);
    return true;
  }

 private:
  std::string names_;
  std::vector<std::size_t> begins_;
};

class Descent {
 public:
  Descent(Descriptor root, TreeWork& work) : stack_(std::move(root)), work_(work) {}

  void run() {
    bool goesOn = readFolder();
    while (goesOn) {
      if (pending_.take(name_))
        goesOn = goDown();
      else if (stack_.depth() == 0)
        return;
      else
        goesOn = goUp();
    }
  }

 private:
  bool readFolder() {
    pending_.beginLevel();
    reader_.begin(stack_.folder());
    while (const auto entry = reader_.next()) {
      const TreeWork::Next next = work_.entry(stack_, *entry);
      if (next == TreeWork::Next::stop) return false;
      if (next == TreeWork::Next::enter) pending_.add(entry->name);
    }
    return reader_.error() == 0 || work_.failed(stack_, "", reader_.error());
  }

  bool goDown() {
    if (const int error = stack_.enter(name_.c_str())) return work_.failed(stack_, name_, error);
    return work_.entered(stack_) && readFolder();
  }

  bool goUp() {
    if (!work_.finished(stack_)) return false;
    // The name is kept, because leaving the folder removes it from the stack.
    name_ = stack_.name();
    const int error = stack_.leave();
    return error == 0 ? work_.left(stack_, name_.c_str()) : leaveLost(error);
  }

  /// Gives up a folder that can't be opened again, together with its pending children. Reports it once.
  bool leaveLost(int error) {
    while (error != 0) {
      if (!work_.failed(stack_, "", error)) return false;
      while (pending_.take(name_)) {
      }
      error = stack_.leave();
    }
    return true;
  }

  FolderStack stack_;
  TreeWork& work_;
  PendingFolders pending_;
  FolderReader reader_;
  std::string name_;
};

}  // namespace

void descend(Descriptor root, TreeWork& work) {
  Descent(std::move(root), work).run();
}

}  // namespace quarn
