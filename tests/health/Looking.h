#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Platform/HostPlatform.h"
#include "QuarnCore/health/HealthIssue.h"
#include "tests/support/FileSystemDecorator.h"
#include "tests/support/Replacing.h"
#include "tests/support/Scene.h"

namespace quarn {

/// The disk, but for some paths the kind of an item or the text of a link can't be read. Counts the questions
/// whether something exists.
class Blinded : public FileSystemDecorator {
 public:
  Blinded() : FileSystemDecorator(hostPlatform().files) {}

  Result<FileAttributes> attributes(const Path& path) const override {
    if (withoutAttributes.contains(path.text())) return unreadable();
    return FileSystemDecorator::attributes(path);
  }
  Result<std::string> readSymbolicLink(const Path& path) const override {
    if (withoutText.contains(path.text())) return unreadable();
    return FileSystemDecorator::readSymbolicLink(path);
  }
  bool exists(const Path& path) const override {
    ++asked;
    return FileSystemDecorator::exists(path);
  }

  std::set<std::string> withoutAttributes;
  std::set<std::string> withoutText;
  mutable int asked = 0;

 private:
  static PlatformError unreadable() { return {"test", 5, "Input/output error"}; }
};

inline std::vector<Path> paths(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

inline std::vector<std::string> locations(const std::vector<HealthIssue>& issues) {
  std::vector<std::string> found;
  for (const HealthIssue& issue : issues) found.push_back(issue.location.text());
  return found;
}

/// The children of a folder, in the order in which the disk lists them.
inline std::vector<std::string> inOrderOfDisk(const std::string& folder) {
  std::vector<std::string> listed;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    listed.push_back(entry.path().string());
  return listed;
}

/// Names that a careless program cuts, splits or quotes, without an extension.
inline std::vector<std::string> oddNames() {
  return {"two words",   "  ",
          "tab\there",   "line\nfeed",
          "quo\"te's",   "back\\slash",
          "-rf",         "$(x)",
          "%s",          "caf\u00E9",
          "cafe\u0301 ", "b\xFFroken",
          "\U0001F389",  std::string(scene::longestName() - 8, 'x')};
}

}  // namespace quarn
