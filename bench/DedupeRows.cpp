#include "bench/DedupeRows.h"

#include <string>

#include "bench/Contest.h"
#include "bench/Programs.h"
#include "bench/Table.h"
#include "bench/Trees.h"

namespace bench {

/// The bundles have the shape of those by which the check of health is measured.
void printDedupeRows() {
  const std::string folder = "/Applications/Measured";
  for (int number = 0; number < 100; ++number) {
    const std::string bundle = folder + "/App " + std::to_string(number) + ".app";
    makeApp(bundle, "com.example.app" + std::to_string(number));
    makeTree(bundle + "/Contents/Resources", 2'000, 440);
  }
  print({"`dedupe scan`, 100 applications of 2,000 files", "`find` on the applications", 1.2},
        compete({{quarn, "dedupe", "scan"}, {"find", "/Applications", "-printf", ""}, 11}));
  timed({"rm", "-rf", folder});
}

}  // namespace bench
