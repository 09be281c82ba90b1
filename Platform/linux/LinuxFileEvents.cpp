#include <cerrno>
#include <poll.h>
#include <thread>

#include "Platform/ThreadPriority.h"
#include "Platform/linux/LinuxPlatform.h"
#include "Platform/linux/WatchedTree.h"

namespace quarn {
namespace {

class Stream : public FileEventStream {
 public:
  Stream(const std::vector<Path>& roots, FileEventSink sink)
      : tree_(roots, std::move(sink)), stopping_(Pipe::make()) {}
  ~Stream() override { stop(); }

  bool start() {
    if (!tree_.isOpen() || !stopping_.reading.isOpen()) return false;
    thread_ = std::thread([this] { run(); });
    return true;
  }

  void stop() override {
    // The other end then tells poll(2) that this one is closed.
    stopping_.writing.close();
    if (thread_.joinable()) thread_.join();
  }

 private:
  void run() {
    setCurrentThreadPriority(ThreadPriority::utility);
    while (waitForEvents()) tree_.reportWaiting();
    tree_.reportRest();
  }

  /// Returns false when the stream is to be stopped.
  bool waitForEvents() {
    std::vector<pollfd> polled{{stopping_.reading.number(), POLLIN, 0}};
    for (const int descriptor : tree_.descriptors()) polled.push_back({descriptor, POLLIN, 0});
    while (::poll(polled.data(), polled.size(), -1) < 0) {
      if (errno != EINTR) return false;
    }
    return polled.front().revents == 0;
  }

  WatchedTree tree_;
  Pipe stopping_;
  std::thread thread_;
};

}  // namespace

std::unique_ptr<FileEventStream> LinuxFileEvents::watch(const std::vector<Path>& roots,
                                                        FileEventSink sink) const {
  auto stream = std::make_unique<Stream>(roots, std::move(sink));
  if (!stream->start()) return nullptr;
  return stream;
}

}  // namespace quarn
