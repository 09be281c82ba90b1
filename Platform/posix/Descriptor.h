#pragma once

#include <unistd.h>
#include <utility>

namespace quarn {

/// Owns a file descriptor and closes it.
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

/// Both ends are closed in a tool that is started, unless they are handed to it: a writing end that
/// lives on elsewhere would keep a reader waiting.
struct Pipe {
  Descriptor reading;
  Descriptor writing;

  /// Not open if the process has no descriptors left.
  static Pipe make();
};

/// Opens what is closed of the three standard streams onto nothing. Otherwise the next file to be opened
/// would take its number, and what is printed would be written into that file.
void ensureStandardStreams();

}  // namespace quarn
