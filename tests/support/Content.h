#pragma once

#include <fstream>
#include <sstream>
#include <string>

/// All bytes of a file, empty if it can't be read. Copied in large pieces: this is compiled without
/// optimization, and large files byte by byte would take longer than all that is tested.
inline std::string contentOf(const std::string& path) {
  const std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return std::move(content).str();
}
