#pragma once

#include <string>
#include <utility>

namespace quarn::room {

/// Throws RoomError "WHAT: reason" when `result` is -1; gives it back otherwise.
int check(int result, const std::string& what);

/// Text of the host's answer to "what went wrong just now", with the thing it went wrong with in front.
[[noreturn]] void failWithErrno(const std::string& what);

/// Owns one descriptor, closed at the end of its life.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Descriptor() { close(); }

  int get() const { return fd_; }
  void close();

 private:
  int fd_;
};

/// Both ends close on exec.
struct Pipe {
  Descriptor readEnd, writeEnd;
  static Pipe make();
};

/// Everything until the other side closes.
std::string readAll(const Descriptor& from);

/// A new file, or a new content for it; throws RoomError.
void writeFile(const std::string& path, const std::string& content);

/// Makes `path` and its missing parents (0755); what stands there already is left alone.
void makeFolders(const std::string& path);

}  // namespace quarn::room
