#include "QuarnCLI/scaffold/PresetRegistry.h"

#include <algorithm>

namespace quarn::PresetRegistry {

const CompilePreset& preset(std::string_view id) {
  const auto found =
      std::find_if(all.begin(), all.end(), [id](const CompilePreset& preset) { return preset.id == id; });
  return found == all.end() ? compilePreset<AutoPreset> : *found;
}

}  // namespace quarn::PresetRegistry
