#include "ExternalAppLauncher/System.h"

#include <array>
#include <cerrno>
#include <climits>
#include <unistd.h>

#include "Platform/PropertyList.h"

namespace quarn::System {
namespace {

constexpr std::size_t largestPropertyList = 1 << 20;

bool isName(const std::string& text) {
  return !text.empty() && text != "." && text != ".." && text.find('/') == std::string::npos;
}

/// Returns the name of the executable in a bundle's property list, or nothing.
std::string namedExecutable(const std::string& application) {
  const auto bytes = read(application + "/Contents/Info.plist", largestPropertyList);
  const auto texts = bytes ? PropertyList::texts(*bytes) : std::nullopt;
  if (!texts || !texts->contains("CFBundleExecutable")) return "";
  const std::string name = texts->at("CFBundleExecutable");
  return isName(name) ? name : "";
}

/// Returns the program that the property list names, or else the only one, or nothing.
std::string executableOf(const std::string& application) {
  const std::string folder = application + "/Contents/MacOS/";
  const std::string named = namedExecutable(application);
  if (!named.empty() && isRegularFile(folder + named)) return folder + named;
  const auto names = visibleNames(folder);
  return names.size() == 1 && isRegularFile(folder + names[0]) ? folder + names[0] : "";
}

}  // namespace

std::string executable() {
  std::array<char, PATH_MAX> path;
  const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
  return length > 0 ? std::string(path.data(), static_cast<std::size_t>(length)) : "";
}

/// The application takes the place of this process.
std::string open(const std::string& application, const std::vector<std::string>& arguments) {
  std::string program = executableOf(application);
  if (program.empty()) return "there is no program in it";
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  ::execv(program.c_str(), pointers.data());
  return reason(errno);
}

void tell(const std::string& sentence) {
  const std::string line = sentence + "\n";
  // Nobody could be told of a failure to tell.
  if (::write(STDERR_FILENO, line.data(), line.size()) < 0) return;
}

}  // namespace quarn::System
