#include "bench/SnapshotTasks.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <iterator>
#include <random>
#include <sys/resource.h>
#include <vector>

#include "QuarnCore/installer/Snapshotter.h"

namespace bench {
namespace {

using Texts = std::vector<std::string>;

constexpr std::size_t namesInFolder = 20;
constexpr std::size_t foldersInBundle = 50;
constexpr std::size_t oneNewIn = 100;

/// Sixteen characters that no neighbour shares.
std::string freeName(std::mt19937_64& random) {
  char name[17];
  std::snprintf(name, sizeof name, "%016llx", static_cast<unsigned long long>(random()));
  return name;
}

/// Calls `use` for so many paths, in path order: the files of bundles, twenty to a folder.
void forEachPath(std::size_t count, const std::function<void(const std::string& path, bool isNew)>& use) {
  std::mt19937_64 random(1);
  for (std::size_t made = 0; made < count;) {
    const std::size_t folder = made / namesInFolder;
    char text[100];
    std::snprintf(text, sizeof text,
                  "/Applications/Application %06zu.app/Contents/Resources/part-%02zu.lproj/",
                  folder / foldersInBundle, folder % foldersInBundle);
    Texts names;
    while (names.size() < std::min(namesInFolder, count - made)) names.push_back(freeName(random));
    std::sort(names.begin(), names.end());
    for (std::size_t i = 0; i < names.size(); ++i) use(text + names[i] + ".nib", (made + i) % oneNewIn == 0);
    made += names.size();
  }
}

/// Prints what the difference of two sets takes. Returns whether it is as large as it should be.
bool timeDifference(const std::function<Texts()>& difference, std::size_t count) {
  const auto begin = std::chrono::steady_clock::now();
  const std::size_t found = difference().size();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  std::printf("%.6f %.1f\n", taken.count(), static_cast<double>(usage.ru_maxrss) / 1024);
  return found == count / oneNewIn;
}

}  // namespace

bool capturesAll(const quarn::Platform& platform, const std::string& root, std::size_t expected) {
  return quarn::Snapshotter::capture(platform, {quarn::Path(root)}).count() == expected;
}

bool timesDifference(std::size_t count) {
  quarn::FileSnapshot before, after;
  forEachPath(count, [&](const std::string& path, bool isNew) {
    if (!isNew) before.paths.append(path);
    after.paths.append(path);
  });
  return timeDifference([&] { return quarn::Snapshotter::added(before, after); }, count);
}

bool timesMergeOfLists(std::size_t count) {
  Texts before, after;
  forEachPath(count, [&](const std::string& path, bool isNew) {
    if (!isNew) before.push_back(path);
    after.push_back(path);
  });
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  const auto difference = [&] {
    Texts found;
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(found));
    return found;
  };
  return timeDifference(difference, count);
}

}  // namespace bench
