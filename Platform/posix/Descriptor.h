#pragma once

#include <unistd.h>
#include <utility>

namespace quarn {

/// Owns a file descriptor. The destructor closes it.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      close();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }
  ~Descriptor() { close(); }

  bool isOpen() const { return number_ >= 0; }
  int number() const { return number_; }
  void close() {
    if (number_ >= 0) ::close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

/// A pipe whose ends are closed in every tool that is started, unless they are passed to it. Otherwise a
/// writing end that stays open in some tool would keep the reader waiting.
struct Pipe {
  Descriptor reading;
  Descriptor writing;

  /// Makes a pipe. Neither end is open if no descriptors are left.
  static Pipe make();
};

/// Opens those of the three standard streams that are closed, on /dev/null. Otherwise the next file to be
/// opened would get such a number, and whatever is printed would go into that file.
void ensureStandardStreams();

}  // namespace quarn
