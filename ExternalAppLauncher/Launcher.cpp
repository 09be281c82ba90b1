#include "ExternalAppLauncher/Launcher.h"

#include <cerrno>

#include "ExternalAppLauncher/System.h"
#include "Platform/Text.h"

namespace quarn::Launcher {
namespace {

/// The target of a launcher may be another launcher, but not in a ring.
constexpr int mostLaunchers = 8;

std::string targetFileOf(const std::string& bundle) {
  return bundle + "/Contents/Resources/ExternalAppTarget.txt";
}

std::string nameOf(const std::string& bundle) {
  const std::string name = bundle.substr(bundle.rfind('/') + 1);
  return name.ends_with(".app") ? name.substr(0, name.size() - 4) : name;
}

/// A stranger's text can't move the cursor of a terminal or spread over several lines.
std::string printable(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  return text;
}

Complaint damaged(const std::string& name, const std::string& why) {
  return {"The launcher “" + printable(name) + "” is damaged: " + why +
          ". Move it to the Trash and have quarn make a new one."};
}

/// Returns the folder directly below /Volumes that a path lies in, or nothing.
std::string volumeOf(const std::string& path) {
  const std::string volumes = "/Volumes/";
  if (!path.starts_with(volumes) || path.size() == volumes.size()) return "";
  return path.substr(0, path.find('/', volumes.size()));
}

Complaint missing(const std::string& name, const std::string& target, int errorNumber) {
  const std::string start = "“" + printable(name) + "” can’t be opened: ";
  const std::string volume = volumeOf(target);
  if (!volume.empty() && !System::isDrive(volume))
    return {start + "the drive " + printable(nameOf(volume)) + " isn’t connected. Connect it and try again."};
  if (errorNumber == ENOENT || errorNumber == ENOTDIR)
    return {start + "its application is missing. It should be at " + printable(target) + "."};
  return {start + printable(target) + ": " + System::reason(errorNumber) + "."};
}

std::string targetOf(const std::string& launcher, const std::string& name) {
  const auto bytes = System::read(targetFileOf(launcher), largestTargetFile);
  if (!bytes) throw damaged(name, "its target file can’t be read (" + System::reason(errno) + ")");
  return targetIn(*bytes, name);
}

/// Follows the launchers from the first one to the application that they lead to.
std::string applicationOf(const std::string& launcher, const std::string& name) {
  std::string current = launcher;
  for (int count = 0; count < mostLaunchers; ++count) {
    current = targetOf(current, name);
    if (const int why = System::whyNotThere(current); why != 0) throw missing(name, current, why);
    if (System::whyNotThere(targetFileOf(current)) != 0) return current;
  }
  throw damaged(name, "it leads back to itself");
}

}  // namespace

std::string targetIn(std::string_view bytes, const std::string& name) {
  const auto text = bytes.size() <= largestTargetFile ? Text::decodingFile(bytes) : std::nullopt;
  const std::string path = text ? Text::trimmingWhitespaceAndNewlines(*text) : "";
  if (text && path.empty()) throw damaged(name, "its target file is empty");
  if (!path.starts_with('/') || path.find('\0') != std::string::npos)
    throw damaged(name, "its target file doesn’t hold a path");
  return path;
}

std::string bundleAround(const std::string& program) {
  const std::string folder = program.substr(0, program.rfind('/') + 1);
  const std::string inside = ".app/Contents/MacOS/";
  if (!folder.ends_with(inside)) return "";
  return folder.substr(0, folder.size() - inside.size() + 4);
}

void open(const std::vector<std::string>& arguments) {
  const std::string launcher = bundleAround(System::executable());
  if (launcher.empty())
    throw Complaint{"This program opens the application of the launcher that it lies in. It lies in none."};
  const std::string name = nameOf(launcher);
  const std::string application = applicationOf(launcher, name);
  const std::string reason = System::open(application, arguments);
  if (!reason.empty())
    throw Complaint{"“" + printable(name) + "” can’t be opened: " + printable(application) + ": " + reason +
                    "."};
}

}  // namespace quarn::Launcher
