#include "Platform/posix/TreeDescent.h"

#include <string>
#include <vector>

#include "Platform/posix/SortedNames.h"

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

/// The way down and up again, whatever the order.
class Descent {
 public:
  Descent(Descriptor root, TreeWork& work) : stack_(std::move(root)), work_(work) {}
  virtual ~Descent() = default;

  void run() {
    bool goesOn = readFolder();
    while (goesOn) {
      const TreeWork::Next next = findChild();
      if (next == TreeWork::Next::enter)
        goesOn = goDown();
      else if (next == TreeWork::Next::stop || stack_.depth() == 0)
        return;
      else
        goesOn = goUp();
    }
  }

 protected:
  /// Reads the folder that has just been entered. Returning false stops the descent.
  virtual bool readFolder() = 0;
  /// Returns `enter` if a child of the innermost folder is to be entered next, whose name is then in `name_`,
  /// and `goOn` if the folder is done.
  virtual TreeWork::Next findChild() = 0;
  /// Drops what is left of the innermost folder.
  virtual void dropFolder() = 0;

  bool goesOnAfterReading() { return reader_.error() == 0 || work_.failed(stack_, "", reader_.error()); }

  FolderStack stack_;
  TreeWork& work_;
  FolderReader reader_;
  std::string name_;

 private:
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

  /// Gives up a folder that can't be opened again, together with what is left of it. Reports it once.
  bool leaveLost(int error) {
    while (error != 0) {
      if (!work_.failed(stack_, "", error)) return false;
      dropFolder();
      error = stack_.leave();
    }
    return true;
  }
};

/// Shows a whole folder before it enters any of its children.
class UnsortedDescent : public Descent {
  using Descent::Descent;

  bool readFolder() override {
    pending_.beginLevel();
    reader_.begin(stack_.folder());
    while (const auto entry = reader_.next()) {
      const TreeWork::Next next = work_.entry(stack_, *entry);
      if (next == TreeWork::Next::stop) return false;
      if (next == TreeWork::Next::enter) pending_.add(entry->name);
    }
    return goesOnAfterReading();
  }

  TreeWork::Next findChild() override {
    return pending_.take(name_) ? TreeWork::Next::enter : TreeWork::Next::goOn;
  }

  void dropFolder() override {
    while (pending_.take(name_)) {
    }
  }

  PendingFolders pending_;
};

/// Reads a whole folder, and enters each child when it is its turn to be shown.
class SortedDescent : public Descent {
  using Descent::Descent;

  bool readFolder() override {
    pending_.beginLevel();
    reader_.begin(stack_.folder());
    while (const auto entry = reader_.next()) pending_.add(*entry);
    pending_.sortLevel();
    return goesOnAfterReading();
  }

  TreeWork::Next findChild() override {
    while (const auto entry = pending_.take()) {
      const TreeWork::Next next = work_.entry(stack_, *entry);
      if (next == TreeWork::Next::enter) name_ = entry->name;
      if (next != TreeWork::Next::goOn) return next;
    }
    return TreeWork::Next::goOn;
  }

  void dropFolder() override {
    while (pending_.take()) {
    }
  }

  SortedNames pending_;
};

}  // namespace

void descend(Descriptor root, TreeWork& work) {
  UnsortedDescent(std::move(root), work).run();
}

void descendSorted(Descriptor root, TreeWork& work) {
  SortedDescent(std::move(root), work).run();
}

}  // namespace quarn
