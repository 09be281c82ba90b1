#include "tests/cli/CampaignLooks.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tests/cli/Faults.h"

namespace campaign {

namespace fs = std::filesystem;

bool isAtOrBelow(const std::string& path, const std::string& root) {
  return path == root || path.starts_with(root + "/");
}

Lines everything() {
  Lines paths;
  for (const std::string root : {"/Applications", "/Library", "/Users", "/Volumes"}) {
    for (const auto& item : fs::recursive_directory_iterator(root)) paths.push_back(item.path().string());
  }
  return paths;
}

std::string facts(const std::string& path) {
  const auto status = fs::symlink_status(path);
  const std::string kind = std::to_string(static_cast<int>(status.type())) + " ";
  if (fs::is_symlink(status)) return kind + scene::target(path);
  const std::string mode = std::to_string(static_cast<unsigned>(status.permissions()));
  return kind + mode + (fs::is_regular_file(status) ? " " + scene::read(path) : "");
}

Lines named(const std::string& folder, const std::string& beginning) {
  Lines places;
  for (const std::string& name : fault::names(folder)) {
    if (name.starts_with(beginning)) places.push_back(folder + "/" + name);
  }
  return places;
}

Lines linesOf(const std::string& text) {
  Lines lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

long count(const std::string& said, const std::string& beginning) {
  const Lines lines = linesOf(said);
  return std::count_if(lines.begin(), lines.end(),
                       [&](const auto& line) { return line.starts_with(beginning); });
}

bool says(const std::string& said, const std::string& text) {
  return said.find(text) != std::string::npos;
}

}  // namespace campaign
