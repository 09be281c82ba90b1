#include "tests/support/Scene.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <linux/capability.h>
#include <poll.h>
#include <sqlite3.h>
#include <sstream>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "Platform/posix/Descriptor.h"
#include "tests/support/Content.h"

namespace scene {
namespace {

namespace fs = std::filesystem;

void fail(const std::string& what) {
  throw std::runtime_error("scene: " + what);
}

std::string plistText(const AppFacts& facts) {
  std::string keys;
  const auto add = [&keys](const char* key, const std::string& value) {
    if (!value.empty()) keys += std::string("\t<key>") + key + "</key>\n\t<string>" + value + "</string>\n";
  };
  add("CFBundleDisplayName", facts.displayName);
  add("CFBundleExecutable", facts.executable);
  add("CFBundleIdentifier", facts.identifier);
  add("CFBundleName", facts.name);
  add("CFBundleShortVersionString", facts.version);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
         "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
         "<plist version=\"1.0\">\n<dict>\n" +
         keys + "</dict>\n</plist>\n";
}

std::vector<char*> pointers(std::vector<std::string>& words) {
  std::vector<char*> result;
  for (std::string& word : words) result.push_back(word.data());
  result.push_back(nullptr);
  return result;
}

int statusOf(int waitStatus) {
  return WIFSIGNALED(waitStatus) ? -WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

[[noreturn]] void become(std::vector<std::string> command, const RunOptions& options) {
  becomeOrdinary();
  for (const std::string& setting : options.environment) {
    const auto equals = setting.find('=');
    ::setenv(setting.substr(0, equals).c_str(), setting.substr(equals + 1).c_str(), 1);
  }
  if (::chdir(options.folder.c_str()) != 0) std::_Exit(126);
  auto arguments = pointers(command);
  ::execvp(arguments[0], arguments.data());
  std::perror(arguments[0]);
  std::_Exit(127);
}

quarn::Pipe makePipe() {
  quarn::Pipe pipe = quarn::Pipe::make();
  if (!pipe.reading.isOpen()) fail("pipe");
  return pipe;
}

/// Hands on what the program has written by now.
void collect(quarn::Descriptor& from, std::string& into) {
  std::array<char, 65536> buffer{};
  const auto count = ::read(from.number(), buffer.data(), buffer.size());
  if (count > 0) into.append(buffer.data(), static_cast<std::size_t>(count));
  if (count <= 0) from.close();
}

/// Feeds the input and collects both streams until the program has closed them.
void converse(quarn::Descriptor& input, quarn::Descriptor& output, quarn::Descriptor& error,
              const RunOptions& options, Run& result) {
  std::string_view rest = options.input ? std::string_view(*options.input) : std::string_view();
  if (rest.empty()) input.close();
  while (output.isOpen() || error.isOpen()) {
    // A closed one is -1, which poll passes over.
    std::array<pollfd, 3> polled{pollfd{output.number(), POLLIN, 0}, pollfd{error.number(), POLLIN, 0},
                                 pollfd{input.number(), POLLOUT, 0}};
    if (::poll(polled.data(), polled.size(), -1) < 0) continue;
    if (polled[2].revents != 0) {
      const auto count = ::write(input.number(), rest.data(), rest.size());
      if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
      if (count <= 0 || rest.empty()) input.close();
    }
    if (polled[0].revents != 0) collect(output, result.out);
    if (polled[1].revents != 0) collect(error, result.err);
  }
}

std::string kindLetter(const fs::file_status& status) {
  switch (status.type()) {
    case fs::file_type::regular:
      return "f";
    case fs::file_type::directory:
      return "d";
    case fs::file_type::symlink:
      return "l";
    case fs::file_type::fifo:
      return "p";
    case fs::file_type::socket:
      return "s";
    default:
      return "?";
  }
}

std::string describe(const fs::path& item, const std::string& relative) {
  const auto status = fs::symlink_status(item);
  std::ostringstream line;
  line << relative << " " << kindLetter(status);
  if (fs::is_symlink(status)) {
    line << " -> " << fs::read_symlink(item).string();
    return line.str();
  }
  line << " " << std::oct << static_cast<unsigned>(status.permissions()) << std::dec;
  if (fs::is_regular_file(status)) {
    const std::string content = scene::read(item.string());
    line << " " << content.size() << " " << std::hash<std::string>()(content);
  }
  return line.str();
}

}  // namespace

bool hasMounts() {
  const char* kind = std::getenv("QUARN_ROOM");
  return kind && std::string(kind) == "mounts";
}

std::string driveTrash(const std::string& onDrive) {
  return onDrive + "/.Trashes/" + std::to_string(::getuid());
}

std::size_t longestName() {
  return hasMounts() ? 255 : 254;
}

void makeFolder(const std::string& path) {
  fs::create_directories(path);
}

void write(const std::string& path, const std::string& content) {
  makeFolder(fs::path(path).parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << content;
  file.close();
  if (!file) fail("can't write " + path);
}

void writeBytes(const std::string& path, std::size_t count) {
  std::string content(count, 'q');
  for (std::size_t i = 0; i < count; ++i) content[i] = static_cast<char>('a' + i * 31 % 26);
  write(path, content);
}

void link(const std::string& at, const std::string& target) {
  makeFolder(fs::path(at).parent_path());
  fs::create_symlink(target, at);
}

void makeApp(const std::string& bundle, const AppFacts& facts, std::size_t bytes) {
  write(bundle + "/Contents/Info.plist", plistText(facts));
  const std::string executable = bundle + "/Contents/MacOS/" + facts.executable;
  write(executable, "#!/bin/sh\necho \"running from $0\"\n");
  ::chmod(executable.c_str(), 0755);
  writeBytes(bundle + "/Contents/Resources/data.bin", bytes);
}

void makeLauncher(const std::string& bundle, const std::string& target) {
  makeApp(bundle,
          {.identifier = "com.example.foo.externallauncher",
           .displayName = "",
           .name = "Launcher",
           .version = "1.0",
           .executable = "ExternalAppLauncher"},
          100);
  write(bundle + "/Contents/Resources/ExternalAppTarget.txt", target + "\n");
}

void makeInstallsDB(const std::string& path) {
  makeFolder(fs::path(path).parent_path());
  sqlite3* database = nullptr;
  if (sqlite3_open(path.c_str(), &database) != SQLITE_OK) fail("can't make " + path);
  sqlite3_exec(database,
               "CREATE TABLE installs (install_id TEXT, app_name TEXT, bundle_id TEXT, version TEXT, "
               "source_file TEXT, source_hash TEXT, install_type TEXT, confidence TEXT, "
               "uninstall_strategy TEXT, installed_at TEXT, uninstalled_at TEXT, notes TEXT);"
               "CREATE TABLE tracked_files (install_id TEXT, file_path TEXT, file_type TEXT, "
               "confidence TEXT);",
               nullptr, nullptr, nullptr);
  sqlite3_close(database);
}

std::vector<std::string> sql(const std::string& statement, const std::string& path) {
  sqlite3* database = nullptr;
  std::vector<std::string> rows;
  if (sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    sqlite3_close(database);
    fail("can't open " + path);
  }
  const auto take = [](void* list, int count, char** values, char**) {
    std::string row;
    for (int i = 0; i < count; ++i) row += (i > 0 ? "|" : "") + std::string(values[i] ? values[i] : "NULL");
    static_cast<std::vector<std::string>*>(list)->push_back(row);
    return 0;
  };
  char* message = nullptr;
  sqlite3_exec(database, statement.c_str(), take, &rows, &message);
  const std::string problem = message ? message : "";
  sqlite3_free(message);
  sqlite3_close(database);
  if (!problem.empty()) fail(problem);
  return rows;
}

void plug(const std::string& name, const std::string& size, bool readOnly) {
  const std::string point = "/Volumes/" + name;
  makeFolder(point);
  const std::string options = "size=" + size + ",mode=0755";
  if (::mount("tmpfs", point.c_str(), "tmpfs", readOnly ? MS_RDONLY : 0, options.c_str()) != 0) {
    fail("can't mount " + point);
  }
}

void unplug(const std::string& name) {
  const std::string point = "/Volumes/" + name;
  if (::umount2(point.c_str(), MNT_DETACH) != 0) fail("can't unmount " + point);
  ::rmdir(point.c_str());
}

void replaceTool(const std::string& path, const std::string& script) {
  fs::remove(path);
  write(path, script);
  ::chmod(path.c_str(), 0755);
}

void removeTool(const std::string& path) {
  fs::remove(path);
}

void becomeOrdinary() {
  // Off the bounding set, since a program started by root would get them back from there.
  for (const int capability : {CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH, CAP_FOWNER, CAP_SYS_ADMIN}) {
    ::prctl(PR_CAPBSET_DROP, capability, 0, 0, 0);
  }
}

Run run(const std::vector<std::string>& command, const RunOptions& options) {
  quarn::Pipe input = makePipe();
  quarn::Pipe output = makePipe();
  quarn::Pipe error = makePipe();
  const pid_t pid = ::fork();
  if (pid < 0) fail("fork");
  if (pid == 0) {
    if (options.input) {
      ::dup2(input.reading.number(), 0);
    } else {
      ::close(0);
    }
    ::dup2(output.writing.number(), 1);
    ::dup2(error.writing.number(), 2);
    become(command, options);
  }
  input.reading.close();
  output.writing.close();
  error.writing.close();
  Run result;
  converse(input.writing, output.reading, error.reading, options, result);
  int status = 0;
  ::waitpid(pid, &status, 0);
  result.status = statusOf(status);
  return result;
}

Run quarn(const std::vector<std::string>& arguments, const RunOptions& options) {
  std::vector<std::string> command = {"quarn"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return run(command, options);
}

Run shell(const std::string& script) {
  return run({"/bin/sh", "-c", script});
}

Background::Background(const std::vector<std::string>& command) : pid_(::fork()) {
  if (pid_ < 0) fail("fork");
  if (pid_ == 0) become(command, {});
}

Background::~Background() {
  if (status_) return;
  ::kill(pid_, SIGKILL);
  wait();
}

int Background::wait() {
  if (!status_) {
    int status = 0;
    ::waitpid(pid_, &status, 0);
    status_ = statusOf(status);
  }
  return *status_;
}

bool exists(const std::string& path) {
  return fs::exists(fs::symlink_status(path));
}

bool isLink(const std::string& path) {
  return fs::is_symlink(fs::symlink_status(path));
}

std::string target(const std::string& link) {
  return isLink(link) ? fs::read_symlink(link).string() : std::string();
}

std::string read(const std::string& path) {
  return contentOf(path);
}

std::vector<std::string> tree(const std::string& path) {
  std::vector<std::string> lines;
  if (!exists(path)) return lines;
  lines.push_back(describe(path, "."));
  if (fs::is_directory(fs::symlink_status(path))) {
    for (const auto& item : fs::recursive_directory_iterator(path)) {
      lines.push_back(describe(item.path(), item.path().lexically_relative(path).string()));
    }
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

bool appears(const std::string& path, double seconds) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!exists(path)) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

bool isAlive(pid_t process) {
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  const std::string status = read("/proc/" + std::to_string(process) + "/stat");
  // The name of the program, in brackets, may hold anything; the state stands behind it, as in proc(5).
  const auto bracket = status.rfind(") ");
  return bracket != std::string::npos && status[bracket + 2] != 'Z' && status[bracket + 2] != 'X';
}

}  // namespace scene
