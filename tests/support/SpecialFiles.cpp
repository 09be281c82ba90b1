#include "tests/support/SpecialFiles.h"

#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

bool makeSocket(const std::string& path) {
  // Some systems leave mknod(2) of a socket to root; an address on the other hand holds a short path only.
  if (::mknod(path.c_str(), S_IFSOCK | 0600, 0) == 0) return true;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.data(), path.size());
  const int made = ::socket(AF_UNIX, SOCK_STREAM, 0);
  const bool bound = ::bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  ::close(made);
  return bound;
}
