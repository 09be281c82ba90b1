#include "QuarnCore/discovery/ProcessList.h"

#include <algorithm>

#include "Platform/Text.h"

namespace quarn::ProcessList {
namespace {

std::vector<std::string> linesOfPs(Platform& platform, const std::vector<std::string>& arguments) {
  auto child = platform.processes.start(Path("/bin/ps"), arguments, OutputStreams::separate);
  if (!child) return {};
  std::string output;
  (*child)->readToEnd([&output](std::string_view bytes) { output.append(bytes); }, [](std::string_view) {});
  (*child)->waitForExit();
  if (!Text::isUTF8(output)) return {};
  const auto pieces = Text::nonEmptyLines(output);
  return {pieces.begin(), pieces.end()};
}

std::vector<std::string> linesOfLineage(Platform& platform) {
  std::string identifiers;
  for (const int identifier : platform.processes.lineage()) {
    identifiers += (identifiers.empty() ? "" : ",") + std::to_string(identifier);
  }
  return linesOfPs(platform, {"-o", "comm,args", "-p", identifiers});
}

}  // namespace

std::vector<std::string> lines(Platform& platform,
                               const std::function<bool(const std::string& line)>& isOfInterest) {
  std::vector<std::string> all = linesOfPs(platform, {"-axo", "comm,args"});
  std::erase_if(all, std::not_fn(isOfInterest));
  if (all.empty()) return all;
  // One line for each of them: another process with the very same line stays.
  for (const std::string& own : linesOfLineage(platform)) {
    const auto found = std::find(all.begin(), all.end(), own);
    if (found != all.end()) all.erase(found);
  }
  return all;
}

}  // namespace quarn::ProcessList
