#include "Platform/posix/PipeReader.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace quarn {

// 64 KiB is the largest amount that a pipe holds by default (pipe(7) on Linux).
PipeReader::PipeReader(std::vector<Source> sources) : sources_(std::move(sources)), buffer_(64 * 1024) {
  for (const Source& source : sources_) {
    if (source.pipe.isOpen()) ::fcntl(source.pipe.number(), F_SETFL, O_NONBLOCK);
  }
}

bool PipeReader::hasOpen() const {
  return std::any_of(sources_.begin(), sources_.end(), [](const Source& s) { return s.pipe.isOpen(); });
}

void PipeReader::readSome(std::optional<std::chrono::milliseconds> limit) {
  std::vector<pollfd> polled;
  // poll(2) ignores entries with a negative descriptor, so closed pipes can stay in the list.
  for (const Source& source : sources_) polled.push_back({source.pipe.number(), POLLIN, 0});
  const int timeout = limit ? static_cast<int>(limit->count()) : -1;
  const int ready = ::poll(polled.data(), static_cast<nfds_t>(polled.size()), timeout);
  // If poll fails for another reason it won't succeed later either, and the caller must not wait for ever.
  if (ready < 0 && errno != EINTR) closeAll();
  if (ready <= 0) return;
  for (std::size_t i = 0; i < polled.size(); ++i) {
    // POLLHUP counts too: reading then returns the rest and the end.
    if (polled[i].revents != 0) readPiece(sources_[i]);
  }
}

void PipeReader::readWaiting() {
  for (Source& source : sources_) {
    while (source.pipe.isOpen() && readPiece(source)) {
    }
  }
}

void PipeReader::closeAll() {
  for (Source& source : sources_) source.pipe.close();
}

bool PipeReader::readPiece(Source& source) {
  const ssize_t count = ::read(source.pipe.number(), buffer_.data(), buffer_.size());
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return errno == EINTR;
  if (count <= 0) {
    source.pipe.close();
    return false;
  }
  source.sink(std::string_view(buffer_.data(), static_cast<std::size_t>(count)));
  return true;
}

}  // namespace quarn
