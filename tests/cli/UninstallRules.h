#pragma once

#include <map>
#include <string>

#include "tests/cli/UninstallHomes.h"

/// What belongs to an application, told once more: by a written table and plain loops over it, without the
/// code under test.
namespace rules {

struct Candidate {
  std::string category;
  bool isSelected = false;  ///< taken where the category is
  /// Has to be listed. What need not is a name that may be read in two ways.
  bool isCertain = true;
};

/// By path. Nothing else may be listed, or go.
std::map<std::string, Candidate> candidates(const homes::Home& home);
/// Whether the home's flags take a candidate.
bool isTaken(const homes::Home& home, const std::string& path, const Candidate& candidate);
/// Whether a volume is mounted in an item, or is the item: it has to stay.
bool holdsVolume(const homes::Home& home, const std::string& path);
/// Whether something is in the way of moving an item.
bool isStuck(const homes::Home& home, const std::string& path);

/// Where the item lies itself, behind links of folders around it.
std::string realPlace(const std::string& path);

}  // namespace rules
