#include "bench/SnapshotRows.h"

#include <cstdlib>

#include "bench/Contest.h"
#include "bench/Table.h"
#include "bench/Trees.h"

namespace bench {
namespace {

/// A program that prints its own seconds and megabytes.
Timing printed(const Command& command) {
  const std::string output = outputOf(command);
  char* rest = nullptr;
  const double seconds = std::strtod(output.c_str(), &rest);
  return {seconds, seconds, std::strtod(rest, nullptr)};
}

/// The rival prints the hidden files, too; it takes longer if it has to leave them out. They are counted by
/// another program, because what this one keeps in memory would count in the peak of those that it starts.
void oneSnapshot(const std::string& subject) {
  const std::string tree = "/tmp/tree";
  makeTree(tree, 200'000, 44'000);
  const std::string count = outputOf({"sh", "-c", "find " + tree + " -name '.*' -prune -o -print | wc -l"});
  print({"`Snapshotter.capture`, 200,000 files", "`find TREE`", 0.9},
        compete({{subject, "snapshot", tree, count}, {"find", tree}, 11}));
  timed({"rm", "-rf", tree});
}

void twoSnapshots(const std::string& subject) {
  const std::string count = "1000000";
  print({"`Snapshotter.added`, two snapshots of 1,000,000 paths", "a merge of two sorted lists of texts", 1.5,
         110},
        compete({.subject = {subject, "snapshot-difference", count},
                 .rival = {subject, "list-difference", count},
                 .pairs = 21,
                 .measure = printed}));
}

}  // namespace

void printSnapshotRows(const std::string& subject) {
  oneSnapshot(subject);
  twoSnapshots(subject);
}

}  // namespace bench
