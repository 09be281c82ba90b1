#include "bench/PluginRows.h"

#include <string>

#include "bench/Contest.h"
#include "bench/Programs.h"
#include "bench/Table.h"
#include "bench/Trees.h"

namespace bench {
namespace {

const std::string source = "/tmp/Measured";

Outcome inspection(const std::string& printed) {
  return compete(
      {{quarn, "install", "plugins", "inspect", source}, {"find", source, "-printf", printed}, 21});
}

/// Files around a few plug-ins, whose names are all that has to be looked at.
void searching() {
  makeTree(source, 100'000, 22'000);
  makeTree(source + "/Small.vst3/Contents", 10, 2);
  print({"`install plugins inspect`, 100,000 files around one plug-in", "`find`", 1.3}, inspection(""));
  timed({"rm", "-rf", source});
}

/// Files of plug-ins, whose sizes have to be looked up.
void measuring() {
  for (int number = 0; number < 50; ++number)
    makeTree(source + "/Plug-in " + std::to_string(number) + ".vst3/Contents", 2'000, 440);
  print({"`install plugins inspect`, 50 plug-ins of 2,000 files", "`find` that looks up sizes", 1.3},
        inspection("%b"));
  timed({"rm", "-rf", source});
}

}  // namespace

void printPluginRows() {
  searching();
  measuring();
}

}  // namespace bench
