#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "Platform/Path.h"
#include "tests/support/Content.h"

/// A fresh folder for one test, removed with all that is in it.
class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& parent = std::filesystem::temp_directory_path().string()) {
    std::string pattern = parent + "/quarn-test.XXXXXX";
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("no scratch folder in " + parent);
    path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& text() const { return path_; }
  std::string at(const std::string& name) const { return path_ + "/" + name; }
  quarn::Path operator/(const std::string& name) const { return quarn::Path(at(name)); }
  quarn::Path path() const { return quarn::Path(path_); }

  void write(const std::string& name, const std::string& content = "content") const {
    std::filesystem::create_directories(std::filesystem::path(at(name)).parent_path());
    std::ofstream(at(name), std::ios::binary) << content;
  }
  void folder(const std::string& name) const { std::filesystem::create_directories(at(name)); }
  void link(const std::string& name, const std::string& target) const {
    std::filesystem::create_symlink(target, at(name));
  }
  std::string read(const std::string& name) const { return contentOf(at(name)); }
  /// A dangling link stands there too.
  bool stands(const std::string& name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(at(name)));
  }
  struct stat status(const std::string& name) const {
    struct stat found {};
    if (::lstat(at(name).c_str(), &found) != 0) throw std::runtime_error("nothing at " + at(name));
    return found;
  }
  std::size_t count() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::recursive_directory_iterator(path_), {}));
  }

  /// The second volume of the tests: a drive, whose folder QUARN_SECOND_VOLUME may name.
  static std::string drive() {
    const char* named = std::getenv("QUARN_SECOND_VOLUME");
    return named ? named : "/Volumes/X9";
  }
  /// One on another volume than the temporary folder: the drive, or memory where the drive is a mere folder.
  /// Nothing where neither can be written to.
  static std::unique_ptr<ScratchFolder> onOtherVolume() {
    struct stat here {
    }, there{};
    ::stat(std::filesystem::temp_directory_path().c_str(), &here);
    for (const std::string& candidate : {drive(), std::string("/dev/shm")}) {
      if (::stat(candidate.c_str(), &there) != 0 || there.st_dev == here.st_dev) continue;
      try {
        return std::make_unique<ScratchFolder>(candidate);
      } catch (const std::runtime_error&) {
      }
    }
    return nullptr;
  }

 private:
  std::string path_;
};
