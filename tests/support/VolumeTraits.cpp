#include "tests/support/VolumeTraits.h"

#include <fcntl.h>
#include <unistd.h>

#include "tests/support/ItemFacts.h"
#include "tests/support/SpecialFiles.h"

namespace {

bool canMake(const ScratchFolder& folder, const std::string& name) {
  const int file = ::open(folder.at(name).c_str(), O_CREAT | O_EXCL | O_WRONLY, 0600);
  if (file >= 0) ::close(file);
  return file >= 0;
}

bool areTwo(const ScratchFolder& folder, const std::string& one, const std::string& other) {
  return canMake(folder, one) && canMake(folder, other);
}

bool keepsHoles(const ScratchFolder& folder) {
  constexpr off_t size = 16 * 1024 * 1024;
  folder.write("holes", "");
  return ::truncate(folder.at("holes").c_str(), size) == 0 &&
         folder.status("holes").st_blocks * 512 < size / 8;
}

bool keepsModes(const ScratchFolder& folder) {
  folder.write("mode");
  return ::chmod(folder.at("mode").c_str(), 0451) == 0 && (folder.status("mode").st_mode & 07777u) == 0451u;
}

bool keepsNanoseconds(const ScratchFolder& folder) {
  folder.write("times");
  const timespec times[2] = {{1'000'000'000, 123'456'789}, {1'100'000'000, 987'654'321}};
  return ::utimensat(AT_FDCWD, folder.at("times").c_str(), times, 0) == 0 &&
         modificationTime(folder.at("times")).tv_nsec == 987'654'321;
}

bool keepsAttributes(const ScratchFolder& folder) {
  folder.write("attributes");
  folder.folder("attributesOfAFolder");
  return setAttribute(folder.at("attributes"), "v") && setAttribute(folder.at("attributesOfAFolder"), "v");
}

std::size_t longestName(const ScratchFolder& folder) {
  std::size_t length = 255;
  while (length > 0 && !canMake(folder, std::string(length, 'n'))) --length;
  return length;
}

std::size_t longestLink(const ScratchFolder& folder) {
  for (const std::size_t length : {4000u, 1000u, 200u}) {
    if (::symlink(std::string(length, 'x').c_str(), folder.at("link").c_str()) == 0) return length;
  }
  return 0;
}

}  // namespace

VolumeTraits traitsOf(const ScratchFolder& folder) {
  const ScratchFolder place(folder.text());
  return {.anyBytes = canMake(place, "\xFF"),
          .letterCase = areTwo(place, "case", "CASE"),
          .normalForms = areTwo(place, "\u00E9", "e\u0301"),
          .modes = keepsModes(place),
          .fifos = ::mkfifo(place.at("fifo").c_str(), 0600) == 0,
          .sockets = makeSocket(place.at("socket")),
          .holes = keepsHoles(place),
          .attributes = keepsAttributes(place),
          .nanoseconds = keepsNanoseconds(place),
          .longestName = longestName(place),
          .longestLink = longestLink(place)};
}
