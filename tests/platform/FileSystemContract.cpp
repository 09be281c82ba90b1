#include "tests/platform/FileSystemContract.h"

#include "tests/support/Decorators.h"
#include "tests/support/FakeTree.h"
#include "tests/support/GatedPlatform.h"

namespace quarn::contract {
namespace {

FileSystem& host() {
  return hostPlatform().files;
}

std::shared_ptr<FileSystem> theHosts() {
  return notOwned(host());
}
std::shared_ptr<FileSystem> forwarding() {
  return std::make_shared<FileSystemDecorator>(host());
}
std::shared_ptr<FileSystem> recording() {
  return std::make_shared<Recording>(host());
}
std::shared_ptr<FileSystem> gated() {
  const auto open = std::make_shared<GatedPlatform>([](const std::string&) { return Result<void>(); });
  return {open, &open->platform().files};
}
std::shared_ptr<FileSystem> fakeTree() {
  return std::make_shared<doubles::FakeTree>(host());
}

class AlwaysSorted : public FileSystemDecorator {
 public:
  using FileSystemDecorator::FileSystemDecorator;
  void walk(const Path& root, Hidden hidden, WalkVisitor& visitor) const override {
    walkSorted(root, hidden, visitor);
  }
};
std::shared_ptr<FileSystem> sorted() {
  return std::make_shared<AlwaysSorted>(host());
}

}  // namespace

Subject<FileSystem> alwaysSorted() {
  return {"Sorted", sorted};
}

std::vector<Subject<FileSystem>> fileSystemsThatWalkTheDisk() {
  return {{"Host", theHosts}, {"Forwarding", forwarding}, {"Recording", recording}, {"Gated", gated}};
}

std::vector<Subject<FileSystem>> fileSystems() {
  auto all = fileSystemsThatWalkTheDisk();
  all.push_back({"FakeTree", fakeTree});
  return all;
}

}  // namespace quarn::contract
