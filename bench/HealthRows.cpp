#include "bench/HealthRows.h"

#include <filesystem>

#include "bench/Contest.h"
#include "bench/Programs.h"
#include "bench/Table.h"
#include "bench/Trees.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

constexpr int applications = 100;

std::string nameOf(int number) {
  return "App " + std::to_string(number) + ".app";
}

/// A machine as it is before anything is moved: 100 applications, and none of them a link.
void nothingMoved() {
  for (int number = 0; number < applications; ++number) {
    makeApp("/Applications/" + nameOf(number), "com.example.app" + std::to_string(number));
  }
  print({"`health check`, nothing moved", "`/bin/true`", 3},
        compete({{quarn, "health", "check"}, {"/bin/true"}, 401}));
  for (int number = 0; number < applications; ++number) fs::remove_all("/Applications/" + nameOf(number));
}

/// The bundles have the shape of the tree by which sizing is measured: 4.5 files to a folder. No tool is
/// started, and so what the tools take doesn't count.
void movedApplications(const std::string& subject) {
  const std::string drive = "/Volumes/X9/ExternalQuarn";
  const std::string apps = drive + "/Apps";
  for (int number = 0; number < applications; ++number) {
    const std::string bundle = apps + "/" + nameOf(number);
    makeApp(bundle, "com.example.app" + std::to_string(number));
    makeTree(bundle + "/Contents/Resources", 2'000, 440);
    fs::create_symlink(bundle, "/Applications/" + nameOf(number));
  }
  print({"`health check` less its tools, 100 applications of 2,000 files", "`find` on the applications", 1.2},
        compete({{subject, "healthy", std::to_string(applications)}, {"find", apps, "-printf", ""}, 11}));
  for (int number = 0; number < applications; ++number) fs::remove("/Applications/" + nameOf(number));
  timed({"rm", "-rf", drive});
}

/// Nine in ten of the million items are deeper than the check looks.
void applicationData(const std::string& subject) {
  const std::string library = "/Users/me/Library/";
  Command find = {"find"};
  for (const char* folder :
       {"Application Support", "Logs", "HTTPStorages", "WebKit", "Saved Application State"}) {
    find.push_back(library + folder);
    makeApplicationData(find.back(), 200, "/Volumes/X9");
    fs::create_symlink("/Volumes/X9/nothing", find.back() + "/dangling");
  }
  find.insert(find.end(), {"-maxdepth", "3", "-printf", ""});
  print({"`DanglingDataLinkDetector.detect`, 1,000,000 items", "`find -maxdepth 3` on the same folders", 1.2},
        compete({{subject, "dead-links", "5"}, find, 11}));
  timed({"sh", "-c", "rm -rf /Users/me/Library/*/org.example.* /Users/me/Library/*/dangling"});
}

}  // namespace

void printHealthRows(const std::string& subject) {
  nothingMoved();
  movedApplications(subject);
  applicationData(subject);
}

}  // namespace bench
