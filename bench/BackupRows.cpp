#include "bench/BackupRows.h"

#include "bench/Contest.h"
#include "bench/Programs.h"
#include "bench/Table.h"
#include "bench/Trees.h"

namespace bench {

void printBackupRows(const std::string& subject) {
  const std::string sources = "/tmp/Sources";
  const std::string backups = "/Volumes/X9/QuarnBackups";
  makeTree(sources, 20'000, 4'400);
  const auto fresh = [&] {
    timed({"rm", "-rf", backups});
    timed({"mkdir", "-p", backups});
  };
  const Command run = {
      "/usr/bin/env", "QUARN_SOURCE_ROOT=" + sources, quarn, "backup", "create", "--target-drive",
      "/Volumes/X9"};
  const auto measure = [&](const Command& command) {
    if (command != run) return timed(command);
    const Timing alone = timed({subject, "copy", sources, backups + "/copy"});
    fresh();
    return less(timed(command), alone);
  };
  const std::string find = "find " + sources + " -printf ''";
  print({"`backup create` less its copy, 20,000 files", "three times `find`", 1.5},
        compete({run, {"sh", "-c", find + "; " + find + "; " + find}, 41, fresh, measure}));
  timed({"rm", "-rf", backups, sources});
}

}  // namespace bench
