#include "QuarnCore/discovery/RememberedFolders.h"

#include <algorithm>

namespace quarn {
namespace {

/// A list costs as much as a few questions, and most folders are asked about once or twice.
constexpr int questionsBeforeListing = 3;

bool isASCII(std::string_view name) {
  return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Coarser than any volume that folds letter case, so that two names of one item always meet.
std::string folded(std::string name) {
  for (char& c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

}  // namespace

bool RememberedFolders::exists(const Path& path) const {
  return mayExist(path) && FileSystemDecorator::exists(path);
}

bool RememberedFolders::isDirectory(const Path& path) const {
  return mayExist(path) && FileSystemDecorator::isDirectory(path);
}

bool RememberedFolders::mayExist(const Path& path) const {
  const std::string_view text = path.text();
  const auto slash = text.rfind('/');
  if (slash == std::string_view::npos) return true;
  const std::string_view name = text.substr(slash + 1);
  // How a volume folds other letters is its own affair.
  if (!isASCII(name) || name.empty() || name == "." || name == "..") return true;
  Folder& folder = folders_[std::string(text.substr(0, slash))];
  if (++folder.questions == questionsBeforeListing) remember(path.parent(), folder);
  return !folder.isListed || folder.names.contains(folded(std::string(name)));
}

/// A folder that can't be listed may still answer for a name, unless it isn't there at all.
void RememberedFolders::remember(const Path& path, Folder& folder) const {
  auto listed = list(path, Hidden::included);
  if (!listed) {
    folder.isListed = listed.error().code == CocoaErrorCode::fileReadNoSuchFile;
    return;
  }
  auto names = *std::move(listed);
  if (!std::all_of(names.begin(), names.end(), isASCII)) return;
  for (std::string& name : names) folder.names.insert(folded(std::move(name)));
  folder.isListed = true;
}

}  // namespace quarn
