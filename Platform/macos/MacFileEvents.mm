#include <CoreServices/CoreServices.h>
#include <algorithm>

#include "Platform/macos/FoundationText.h"
#include "Platform/macos/MacPlatform.h"

namespace quarn {
namespace {

// Seconds during which events are gathered into one call. With "no defer", the first one after a quiet time
// comes at once (FSEvents.h).
constexpr CFTimeInterval latency = 0.25;
constexpr FSEventStreamCreateFlags flags =
    kFSEventStreamCreateFlagUseCFTypes | kFSEventStreamCreateFlagNoDefer | kFSEventStreamCreateFlagFileEvents;

/// Calls come one at a time, so that it is possible to wait for the last one.
dispatch_queue_t utilityQueue() {
  return dispatch_queue_create_with_target("quarn.file-events", DISPATCH_QUEUE_SERIAL,
                                           dispatch_get_global_queue(QOS_CLASS_UTILITY, 0));
}

NSArray<NSString*>* textsOf(const std::vector<Path>& paths) {
  NSMutableArray<NSString*>* texts = [NSMutableArray array];
  for (const Path& path : paths) {
    if (NSString* text = foundationPath(path)) [texts addObject:text];
  }
  return texts;
}

class Stream : public FileEventStream {
 public:
  explicit Stream(FileEventSink sink) : sink_(std::move(sink)) {}
  ~Stream() override { stop(); }

  bool start(NSArray<NSString*>* roots);
  void stop() override;

 private:
  static void received(ConstFSEventStreamRef stream, void* info, std::size_t count, void* paths,
                       const FSEventStreamEventFlags* flags, const FSEventStreamEventId* identifiers);
  void release();

  const FileEventSink sink_;
  const dispatch_queue_t queue_ = utilityQueue();
  FSEventStreamRef stream_ = nullptr;
};

bool Stream::start(NSArray<NSString*>* roots) {
  // No retain and release functions: this object outlives the stream, which `stop` releases.
  FSEventStreamContext context{0, this, nullptr, nullptr, nullptr};
  stream_ = FSEventStreamCreate(kCFAllocatorDefault, &Stream::received, &context, (__bridge CFArrayRef)roots,
                                kFSEventStreamEventIdSinceNow, latency, flags);
  if (!stream_) return false;
  FSEventStreamSetDispatchQueue(stream_, queue_);
  if (FSEventStreamStart(stream_)) return true;
  release();
  return false;
}

void Stream::stop() {
  if (!stream_) return;
  // Otherwise what has been gathered and not delivered yet would be lost.
  FSEventStreamFlushSync(stream_);
  FSEventStreamStop(stream_);
  release();
}

void Stream::release() {
  FSEventStreamInvalidate(stream_);
  // A call that has begun may still be running.
  dispatch_sync_f(queue_, nullptr, [](void*) {});
  FSEventStreamRelease(stream_);
  stream_ = nullptr;
}

// The flags of the events aren't looked at: every path counts.
void Stream::received(ConstFSEventStreamRef, void* info, std::size_t count, void* paths,
                      const FSEventStreamEventFlags*, const FSEventStreamEventId*) {
  if (!info) return;
  @autoreleasepool {
    NSArray* texts = (__bridge NSArray*)paths;
    std::vector<Path> changed;
    for (NSUInteger i = 0; i < std::min<NSUInteger>(count, texts.count); ++i) {
      if ([texts[i] isKindOfClass:NSString.class]) changed.emplace_back(bytesOf(texts[i]));
    }
    if (!changed.empty()) static_cast<Stream*>(info)->sink_(changed);
  }
}

}  // namespace

std::unique_ptr<FileEventStream> MacFileEvents::watch(const std::vector<Path>& roots,
                                                      FileEventSink sink) const {
  @autoreleasepool {
    NSArray<NSString*>* texts = textsOf(roots);
    if (texts.count == 0) return nullptr;
    auto stream = std::make_unique<Stream>(std::move(sink));
    if (!stream->start(texts)) return nullptr;
    return stream;
  }
}

}  // namespace quarn
