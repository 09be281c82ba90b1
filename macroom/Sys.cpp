#include "Sys.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace quarn::room {

void failWithErrno(const std::string& what) {
  throw RoomError(what + ": " + std::strerror(errno));
}

int check(int result, const std::string& what) {
  if (result == -1) failWithErrno(what);
  return result;
}

std::string readAll(const Descriptor& from) {
  std::string all;
  std::array<char, 512> buffer{};
  ssize_t count = 0;
  while ((count = ::read(from.number(), buffer.data(), buffer.size())) > 0 || (count < 0 && errno == EINTR))
    if (count > 0) all.append(buffer.data(), static_cast<std::size_t>(count));
  return all;
}

void writeFile(const std::string& path, const std::string& content) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << content;
  if (!file.flush()) failWithErrno(path);
}

void makeFolders(const std::string& path) {
  std::error_code error;
  std::filesystem::create_directories(path, error);
  if (error) throw RoomError(path + ": " + error.message());
}

}  // namespace quarn::room
