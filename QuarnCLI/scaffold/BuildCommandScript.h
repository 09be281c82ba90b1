#pragma once

#include <string>

#include "QuarnCLI/scaffold/CompilePreset.h"

/// The script that builds a project, signs the bundle and installs it. It stands alone, calls nothing of
/// quarn's, and deletes nothing.
namespace quarn::BuildCommandScript {

/// What the generator settles. Each value may hold any bytes but NUL.
struct Values {
  std::string appName;
  std::string binSrc;        ///< the built bundle; a relative path starts at the script's folder
  std::string defaultDrive;  ///< empty for none
};

std::string text(const Values& values, const CompilePreset& preset);

}  // namespace quarn::BuildCommandScript
