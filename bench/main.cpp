// Runs in a room, on memory file systems, and prints a table. bench-run SUBJECT-PROGRAM

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/BackupRows.h"
#include "bench/Contest.h"
#include "bench/DedupeRows.h"
#include "bench/HealthRows.h"
#include "bench/InstallRows.h"
#include "bench/PluginRows.h"
#include "bench/Programs.h"
#include "bench/ReplacedTool.h"
#include "bench/SnapshotRows.h"
#include "bench/Table.h"
#include "bench/Trees.h"
#include "bench/UninstallRows.h"

namespace {

namespace fs = std::filesystem;
using bench::Command;
using bench::print;
using bench::quarn;

void walks(const std::string& subject) {
  const std::string tree = "/tmp/tree";
  const std::string copy = "/tmp/copy";
  bench::makeTree(tree, 200'000, 44'000);
  const Command find = {"find", tree};
  bench::timed(find);
  print({"`SizingService.measure`, 200,000 files", "`find TREE`", 1.15, 8},
        bench::compete({{subject, "measure", tree}, find, 11}));
  print({"`SizeCalculator.size`, 200,000 files", "`find TREE`", 1.15, 8},
        bench::compete({{subject, "size", tree}, find, 11}));
  bench::timed({"cp", "-a", tree, copy});
  print({"`MoveVerifier.failureReason`, 200,000 files", "`find TREE`", 4.0, 8},
        bench::compete({{subject, "verify", tree, copy}, find, 7}));
  bench::timed({"rm", "-rf", tree, copy});
}

void oneMove() {
  const std::string prepared = "/tmp/Big.app";
  bench::makeApp(prepared, "com.example.big");
  bench::makeTree(prepared + "/Contents/Resources", 50'000, 5'000);
  std::ofstream("/tmp/ditto") << "#!/bin/sh\nexec cp -a \"$2\" \"$3\"\n";
  fs::permissions("/tmp/ditto", fs::perms::owner_all);
  fs::remove("/usr/bin/ditto");
  fs::copy("/tmp/ditto", "/usr/bin/ditto");
  const auto fresh = [&prepared] {
    bench::timed({"rm", "-rf", "/Applications/Big.app", "/Volumes/X9/ExternalQuarn", "/Volumes/X9/Big.app"});
    bench::timed({"cp", "-a", prepared, "/Applications/Big.app"});
  };
  print({"`move one`, 50,000 files", "`cp -a; rm -rf`", 1.15},
        bench::compete(
            {{quarn, "move", "one", "/Applications/Big.app", "--yes"},
             {"sh", "-c", "cp -a /Applications/Big.app /Volumes/X9/Big.app && rm -rf /Applications/Big.app"},
             7,
             fresh}));
  bench::timed({"rm", "-rf", "/Applications/Big.app", "/Volumes/X9/ExternalQuarn", prepared});
}

void starts() {
  const Command nothing = {"/bin/true"};
  print({"`quarn help`", "`/bin/true`", 1.8}, bench::compete({{quarn, "help"}, nothing, 401}));
  print({"`quarn move drives`", "`/bin/true`", 2.5},
        bench::compete({{quarn, "move", "drives"}, nothing, 401}));
}

/// A line of two million bytes, as a process with long arguments can have, and many ordinary ones.
void processList(const std::string& subject) {
  std::ofstream list("/tmp/list");
  for (int number = 0; number < 140'000; ++number) list << "/x/y/z.appx/a ";
  for (int number = 0; number < 500; ++number) {
    list << "\nhelper /Applications/App " << number << ".app/Contents/MacOS/helper --type=renderer";
  }
  list.close();
  const bench::ReplacedTool ps("/bin/ps", "#!/bin/sh\ncase $1 in -axo) exec cat /tmp/list ;; esac\n");
  print({"`RunningAppsDetector.bundlePaths`, a list of 2 MB", "the same `ps` twice and `grep`", 1.8, 16},
        bench::compete({{subject, "running"},
                        {"sh", "-c", "/bin/ps -axo | grep -c '[.]app/Contents/'; exec /bin/ps"},
                        101}));
}

double medianProcessorMilliseconds(const Command& command) {
  std::vector<double> milliseconds;
  for (int i = 0; i < 21; ++i) milliseconds.push_back(bench::timed(command).processorSeconds * 1000);
  return bench::median(milliseconds);
}

void plan(const std::string& subject) {
  for (int number = 0; number < 300; ++number) {
    const std::string name = "App " + std::to_string(number);
    bench::makeApp("/Applications/" + name + ".app", "com.example.app" + std::to_string(number));
  }
  const Command command = {quarn, "move", "plan"};
  const double whole = medianProcessorMilliseconds(command);
  const double sizing = medianProcessorMilliseconds({subject, "measure-each", "/Applications"});
  const double start = medianProcessorMilliseconds({quarn, "help"});
  const double rest = whole - (sizing - start);
  bench::makeNames("/Users/me/Library/Caches", 200'000);
  const double crowded = medianProcessorMilliseconds(command);
  std::printf(
      "\n`move plan` over 300 applications: %.1f ms of processor time, %.1f ms of it for sizing; "
      "less the sizing %.1f ms%s (limit 40 ms); with 200,000 names in ~/Library/Caches %.1f ms%s more "
      "(limit 5 ms)\n",
      whole, sizing - start, rest, bench::mark(rest, 40), crowded - whole, bench::mark(crowded - whole, 5));
}

}  // namespace

int main(int count, char** values) {
  if (count != 2) return 2;
  bench::printHeading();
  walks(values[1]);
  bench::printSnapshotRows(values[1]);
  // Before the first move, which leaves a record.
  bench::printHealthRows(values[1]);
  bench::printDedupeRows();
  bench::printInstallRows(values[1]);
  bench::printBackupRows(values[1]);
  bench::printPluginRows();
  oneMove();
  starts();
  processList(values[1]);
  bench::printUninstallFigures(values[1]);
  plan(values[1]);
  return 0;
}
