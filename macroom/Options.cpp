#include "Options.h"

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace quarn::room {

namespace fs = std::filesystem;

const char* const Options::usage =
    "usage: quarn-room [OPTION]... -- COMMAND [ARG...]\n"
    "Runs COMMAND in a disposable, Mac-like root; nothing of this machine is changed.\n"
    "\n"
    "  --drive NAME=SIZE[,ro]  a drive of that size (64m, 2g) at /Volumes/NAME, read-only with ,ro\n"
    "  --bind PATH             make PATH of this machine visible and writable at the same place\n"
    "  --quarn FILE            put the executable FILE, and an external-app-launcher beside\n"
    "                          it, into the room's /usr/local/libexec, and a script that\n"
    "                          starts it into /usr/local/bin\n"
    "  --cwd PATH              start COMMAND in PATH (/Users/me)\n"
    "  --keep-rights           keep all of root's rights instead of those of an ordinary user\n"
    "  --help                  show this text\n"
    "\n"
    "In the room `plug NAME SIZE [ro]` and `unplug NAME` add and pull out drives.\n"
    "The exit status is that of COMMAND, 128 + n for signal n, 125 when no room could be made.\n";

namespace {

HostPath existing(const std::string& path) {
  std::error_code error;
  const fs::path real = fs::canonical(path, error);
  if (error) throw UsageError(path + ": " + error.message());
  std::string named = fs::absolute(path).lexically_normal().string();
  while (named.size() > 1 && named.back() == '/') named.pop_back();
  return {named, real.string()};
}

DriveRequest drive(const std::string& text) {
  if (auto request = DriveRequest::parse(text)) return *request;
  throw UsageError("--drive wants NAME=SIZE or NAME=SIZE,ro, not \"" + text + "\"");
}

std::string executable(const std::string& text) {
  const std::string path = existing(text).real;
  if (!fs::is_regular_file(path) || ::access(path.c_str(), X_OK) != 0)
    throw UsageError(text + ": not an executable");
  return path;
}

bool takeFlag(Options& options, const std::string& word) {
  if (word == "--keep-rights") return options.keepRights = true;
  if (word == "--help") return options.help = true;
  return false;
}

void takeValue(Options& options, const std::string& word, const std::string& value) {
  if (word == "--drive")
    options.drives.push_back(drive(value));
  else if (word == "--bind")
    options.binds.push_back(existing(value));
  else if (word == "--quarn")
    options.quarns.push_back(executable(value));
  else if (word == "--cwd")
    options.cwd = value;
  else
    throw UsageError("unknown option " + word);
}

}  // namespace

Options Options::parse(const std::vector<std::string>& arguments) {
  Options options;
  const char* force = std::getenv("QUARN_ROOM_FORCE");
  options.forceProot = force != nullptr && std::string(force) == "proot";
  auto word = arguments.begin();
  for (; word != arguments.end() && *word != "--"; ++word) {
    if (takeFlag(options, *word)) continue;
    if (word + 1 == arguments.end()) throw UsageError("unknown option or missing value: " + *word);
    takeValue(options, *word, *(word + 1));
    ++word;
  }
  if (word != arguments.end()) options.command.assign(word + 1, arguments.end());
  if (options.command.empty() && !options.help) throw UsageError("no command after --");
  return options;
}

}  // namespace quarn::room
