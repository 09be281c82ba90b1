#pragma once

#include <functional>

#include "tests/support/Decorators.h"
#include "tests/support/Replacing.h"

namespace quarn {

/// A platform of which every changing operation (of files, of the Trash, the start of a tool) first
/// passes one gate, which may note it, refuse it or end the process.
class GatedPlatform {
 public:
  using Gate = std::function<Result<void>(const std::string& operation)>;

  explicit GatedPlatform(const Gate& gate, const Platform& inner = hostPlatform())
      : files_(inner.files, gate),
        trash_(inner.trash, gate),
        processes_(inner.processes, gate),
        platform_(replacing({.files = &files_, .processes = &processes_, .trash = &trash_}, inner)) {}
  GatedPlatform(const GatedPlatform&) = delete;
  GatedPlatform& operator=(const GatedPlatform&) = delete;

  Platform& platform() { return platform_; }

 private:
  class Files : public GuardedFileSystem {
   public:
    Files(FileSystem& inner, Gate gate) : GuardedFileSystem(inner), gate_(std::move(gate)) {}

   protected:
    Result<void> before(const std::string& operation) override { return gate_(operation); }

   private:
    Gate gate_;
  };

  class GatedTrash : public Trash {
   public:
    GatedTrash(Trash& inner, Gate gate) : inner_(inner), gate_(std::move(gate)) {}
    Result<Path> moveToTrash(const Path& item) override {
      if (auto refusal = gate_("trash " + item.text()); !refusal) return refusal.error();
      return inner_.moveToTrash(item);
    }

   private:
    Trash& inner_;
    Gate gate_;
  };

  class GatedProcesses : public Processes {
   public:
    GatedProcesses(Processes& inner, Gate gate) : inner_(inner), gate_(std::move(gate)) {}
    Result<std::unique_ptr<Child>> start(const Path& executable, const std::vector<std::string>& arguments,
                                         OutputStreams streams) override {
      std::string operation = "start " + executable.text();
      for (const std::string& argument : arguments) operation += " " + argument;
      if (auto refusal = gate_(operation); !refusal) return refusal.error();
      return inner_.start(executable, arguments, streams);
    }
    std::vector<int> lineage() const override { return inner_.lineage(); }

   private:
    Processes& inner_;
    Gate gate_;
  };

  Files files_;
  GatedTrash trash_;
  GatedProcesses processes_;
  Platform platform_;
};

}  // namespace quarn
