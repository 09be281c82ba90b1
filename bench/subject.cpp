// One service in a process of its own, so that its time and its peak of memory can be told from outside:
// bench-subject measure|size|measure-each PATH, bench-subject verify SOURCE COPY, bench-subject running.

#include <cstdio>
#include <cstring>

#include "Platform/HostPlatform.h"
#include "QuarnCore/discovery/RunningAppsDetector.h"
#include "QuarnCore/foundation/SizeCalculator.h"
#include "QuarnCore/foundation/SizingService.h"
#include "QuarnCore/move/MoveVerifier.h"

int main(int count, char** values) {
  quarn::Platform& platform = quarn::hostPlatform();
  if (count == 3 && std::strcmp(values[1], "measure") == 0) {
    const auto bytes = quarn::SizingService::measure(platform, quarn::Path(values[2]));
    return std::printf("%lld\n", static_cast<long long>(bytes)) > 0 ? 0 : 1;
  }
  if (count == 3 && std::strcmp(values[1], "size") == 0) {
    const auto bytes = quarn::SizeCalculator::size(platform, quarn::Path(values[2]));
    return std::printf("%lld\n", static_cast<long long>(bytes)) > 0 ? 0 : 1;
  }
  if (count == 3 && std::strcmp(values[1], "measure-each") == 0) {
    std::int64_t bytes = 0;
    const quarn::Path folder(values[2]);
    for (const auto& name : platform.files.list(folder, quarn::Hidden::skipped).valueOr({})) {
      bytes += quarn::SizingService::measure(platform, folder.appending(name));
    }
    return std::printf("%lld\n", static_cast<long long>(bytes)) > 0 ? 0 : 1;
  }
  if (count == 4 && std::strcmp(values[1], "verify") == 0) {
    const auto reason =
        quarn::MoveVerifier::failureReason(platform, quarn::Path(values[2]), quarn::Path(values[3]));
    if (reason) std::fprintf(stderr, "%s\n", reason->c_str());
    return reason ? 1 : 0;
  }
  if (count == 2 && std::strcmp(values[1], "running") == 0) {
    return quarn::RunningAppsDetector::bundlePaths(platform).empty() ? 1 : 0;
  }
  return 2;
}
