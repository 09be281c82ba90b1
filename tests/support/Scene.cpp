#include "tests/support/Scene.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sqlite3.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/Content.h"

namespace scene {
namespace {

namespace fs = std::filesystem;

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

std::string roomKind() {
  const char* kind = std::getenv("QUARN_ROOM");
  return kind ? kind : "";
}

}  // namespace

void fail(const std::string& what) {
  throw std::runtime_error("scene: " + what);
}

bool hasMounts() {
  return roomKind() == "mounts";
}

bool inProot() {
  return roomKind() == "proot";
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
  // A launcher holds nothing else.
  fs::remove(bundle + "/Contents/Resources/data.bin");
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

void replaceTool(const std::string& path, const std::string& script) {
  fs::remove(path);
  write(path, script);
  ::chmod(path.c_str(), 0755);
}

void removeTool(const std::string& path) {
  fs::remove(path);
}

}  // namespace scene
