#include "bench/ReplacedTool.h"

#include <filesystem>
#include <fstream>

namespace bench {

namespace fs = std::filesystem;

ReplacedTool::ReplacedTool(const std::string& tool, const std::string& script)
    : tool_(tool), kept_("/tmp/kept " + fs::path(tool).filename().string()) {
  fs::copy(fs::canonical(tool), kept_);
  fs::remove(tool);
  std::ofstream(tool) << script;
  fs::permissions(tool, fs::perms::owner_all);
}

ReplacedTool::~ReplacedTool() {
  fs::remove(tool_);
  fs::copy(kept_, tool_);
  fs::remove(kept_);
}

}  // namespace bench
