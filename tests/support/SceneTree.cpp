#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>
#include <thread>

#include "tests/support/Content.h"
#include "tests/support/Scene.h"

namespace scene {
namespace {

namespace fs = std::filesystem;

std::string kindLetter(const fs::file_status& status) {
  switch (status.type()) {
    case fs::file_type::regular:
      return "f";
    case fs::file_type::directory:
      return "d";
    case fs::file_type::symlink:
      return "l";
    case fs::file_type::fifo:
      return "p";
    case fs::file_type::socket:
      return "s";
    default:
      return "?";
  }
}

std::string describe(const fs::path& item, const std::string& relative) {
  const auto status = fs::symlink_status(item);
  std::ostringstream line;
  line << relative << " " << kindLetter(status);
  if (fs::is_symlink(status)) {
    line << " -> " << fs::read_symlink(item).string();
    return line.str();
  }
  line << " " << std::oct << static_cast<unsigned>(status.permissions()) << std::dec;
  if (fs::is_regular_file(status)) {
    const std::string content = scene::read(item.string());
    line << " " << content.size() << " " << std::hash<std::string>()(content);
  }
  return line.str();
}

}  // namespace

bool exists(const std::string& path) {
  return fs::exists(fs::symlink_status(path));
}

bool isLink(const std::string& path) {
  return fs::is_symlink(fs::symlink_status(path));
}

std::string target(const std::string& link) {
  return isLink(link) ? fs::read_symlink(link).string() : std::string();
}

std::string read(const std::string& path) {
  return contentOf(path);
}

std::vector<std::string> tree(const std::string& path) {
  std::vector<std::string> lines;
  if (!exists(path)) return lines;
  lines.push_back(describe(path, "."));
  if (fs::is_directory(fs::symlink_status(path))) {
    for (const auto& item : fs::recursive_directory_iterator(path)) {
      lines.push_back(describe(item.path(), item.path().lexically_relative(path).string()));
    }
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

bool appears(const std::string& path, double seconds) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!exists(path)) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

}  // namespace scene
