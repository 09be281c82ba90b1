#include "bench/UninstallRows.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "bench/Contest.h"
#include "bench/Programs.h"
#include "bench/SystemCalls.h"
#include "bench/Table.h"
#include "bench/Trees.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

constexpr int applications = 1'000;
const std::string caches = "/Users/me/Library/Caches";
const std::string ofUser = "/Users/me/Applications";
const std::vector<std::string> roots = {"/Applications", "/Applications/Utilities", ofUser};

std::string bundle(int number) {
  const auto root = static_cast<std::size_t>(number) % roots.size();
  return roots[root] + "/App " + std::to_string(number) + ".app";
}

/// A property list of 4 KB, the size of an ordinary one: most of it are the kinds of documents that the
/// application opens.
std::string propertyList(int number) {
  const std::string name = "App " + std::to_string(number);
  std::string list =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
      "\t<key>CFBundleIdentifier</key>\n\t<string>com.example.app" +
      std::to_string(number) + "</string>\n\t<key>CFBundleName</key>\n\t<string>" + name +
      "</string>\n\t<key>CFBundleShortVersionString</key>\n\t<string>1.2.3</string>\n"
      "\t<key>NSHumanReadableCopyright</key>\n\t<string>Copyright © 2026 Example Ltd.</string>\n"
      "\t<key>CFBundleDocumentTypes</key>\n\t<array>\n";
  for (int kind = 0; kind < 12; ++kind) {
    list += "\t\t<dict>\n\t\t\t<key>CFBundleTypeExtensions</key>\n\t\t\t<array><string>ext" +
            std::to_string(kind) +
            "</string></array>\n\t\t\t<key>CFBundleTypeName</key>\n\t\t\t<string>Document " +
            std::to_string(kind) +
            "</string>\n\t\t\t<key>CFBundleTypeRole</key>\n\t\t\t<string>Editor</string>\n"
            "\t\t\t<key>LSHandlerRank</key>\n\t\t\t<string>Owner</string>\n\t\t</dict>\n";
  }
  return list + "\t</array>\n</dict>\n</plist>\n";
}

double medianProcessorMilliseconds(const Command& command) {
  std::vector<double> milliseconds;
  for (int i = 0; i < 21; ++i) milliseconds.push_back(timed(command).processorSeconds * 1000);
  return median(milliseconds);
}

void inventory(const std::string& subject) {
  const Command command = {quarn, "uninstall", "apps"};
  Command pass = {subject, "look-up-and-read"};
  pass.insert(pass.end(), roots.begin(), roots.end());
  const double milliseconds = medianProcessorMilliseconds(command);
  const auto calls = static_cast<double>(systemCalls(command));
  const double ratio = calls / static_cast<double>(systemCalls(pass));
  std::printf(
      "\n`uninstall apps` over 1,000 applications in three folders: %.1f ms of processor time%s (limit 60 "
      "ms); "
      "%.0f system calls, %.2f%s times (limit 1.5) those of one look at each and one read of its property "
      "list\n",
      milliseconds, mark(milliseconds, 60), calls, ratio, mark(ratio, 1.5));
}

void plan() {
  const Command command = {quarn, "uninstall", "plan", bundle(0)};
  makeNames(caches, 200);
  const double milliseconds = medianProcessorMilliseconds(command);
  const long calls = systemCalls(command);
  makeNames(caches, 200'000);
  const double more = medianProcessorMilliseconds(command) - milliseconds;
  const long moreCalls = systemCalls(command) - calls;
  std::printf(
      "\n`uninstall plan` with 200 names in ~/Library/Caches: %.1f ms of processor time and %ld system "
      "calls; "
      "with 200,000 names %.1f ms%s more (limit 5 ms) and %ld calls%s more (limit 10)\n",
      milliseconds, calls, more, mark(more, 5), moreCalls, mark(static_cast<double>(moreCalls), 10));
}

}  // namespace

void printUninstallFigures(const std::string& subject) {
  for (int number = 0; number < applications; ++number) {
    fs::create_directories(bundle(number) + "/Contents/MacOS");
    std::ofstream(bundle(number) + "/Contents/Info.plist") << propertyList(number);
  }
  inventory(subject);
  plan();
  for (int number = 0; number < applications; ++number) fs::remove_all(bundle(number));
  timed({"rm", "-rf", caches});
}

}  // namespace bench
