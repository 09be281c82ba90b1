#include "Platform/linux/InotifyQueue.h"

#include <array>
#include <cstring>
#include <string>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace quarn {
namespace {

// Room for a few hundred events. One with the longest name needs less than 300 bytes.
using Buffer = std::array<char, 16 * 1024>;

std::size_t waitingBytes(int queue) {
  int count = 0;
  return ::ioctl(queue, FIONREAD, &count) == 0 && count > 0 ? static_cast<std::size_t>(count) : 0;
}

void handleEach(std::string_view bytes, const std::function<void(const InotifyQueue::Event&)>& handle) {
  while (bytes.size() >= sizeof(inotify_event)) {
    inotify_event head;
    std::memcpy(&head, bytes.data(), sizeof head);
    // The name is followed by as many NULs as align the next event.
    const std::string_view name = bytes.substr(sizeof head, head.len);
    handle({head.wd, head.mask, name.substr(0, name.find('\0'))});
    bytes.remove_prefix(sizeof head + head.len);
  }
}

}  // namespace

InotifyQueue::InotifyQueue() : descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

int InotifyQueue::add(int folder, std::uint32_t mask) {
  // inotify_add_watch(2) takes a path. This one leads to the open folder (proc(5)), however long the folder's
  // own path is, and whatever has taken its place meanwhile.
  const std::string link = "/proc/self/fd/" + std::to_string(folder);
  return ::inotify_add_watch(descriptor(), link.c_str(), mask | IN_ONLYDIR);
}

void InotifyQueue::remove(int watch) {
  ::inotify_rm_watch(descriptor(), watch);
}

bool InotifyQueue::readWaiting(const std::function<void(const Event&)>& handle) {
  // What arrives while the events are handled waits for the next call, so that this one comes to an end.
  const std::size_t waiting = waitingBytes(descriptor());
  Buffer buffer;
  for (std::size_t done = 0; done < waiting;) {
    const ssize_t count = ::read(descriptor(), buffer.data(), buffer.size());
    if (count <= 0) break;
    handleEach({buffer.data(), static_cast<std::size_t>(count)}, handle);
    done += static_cast<std::size_t>(count);
  }
  return waiting > 0;
}

}  // namespace quarn
