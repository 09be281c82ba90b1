#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

/// What tests say about the room they run in: setting a scene, running the program in it, looking at
/// the tree afterwards. A room has the drive "/Volumes/X9", the home "/Users/me" and nothing installed.
namespace scene {

inline const std::string home = "/Users/me";
inline const std::string drive = "/Volumes/X9";
inline const std::string installsDB = home + "/.claude/tools/setup-ledger/db/installs.db";
inline const std::string manifest = home + "/Library/Application Support/Quarn/health-manifest.json";

/// True where drives are real mounts; false in the room that needs no rights.
bool hasMounts();
/// True in that one, where proot takes every path apart and a deep tree takes minutes.
bool inProot();
/// The Trash on a drive, of whoever runs the test.
std::string driveTrash(const std::string& onDrive = drive);
/// How many bytes a name may have: 255, and one less where proot keeps one for itself.
std::size_t longestName();

// Setting.

/// For a scene that can't be set: throws, which ends the test.
[[noreturn]] void fail(const std::string& what);
/// Writes a file, its parents too.
void write(const std::string& path, const std::string& content);
/// A file of so many bytes that aren't zero.
void writeBytes(const std::string& path, std::size_t count);
void makeFolder(const std::string& path);
void link(const std::string& at, const std::string& target);

/// What stands in a bundle's property list; an empty text leaves its key out.
struct AppFacts {
  std::string identifier = "com.example.foo";
  std::string displayName = {};
  std::string name = {};
  std::string version = "1.2.3";
  std::string executable = "Foo";
};
/// A bundle with a property list, an executable shell script that prints its own path, and a resource of
/// `bytes` bytes.
void makeApp(const std::string& bundle, const AppFacts& facts = {}, std::size_t bytes = 40'000);
/// A small bundle that leads to `target`.
void makeLauncher(const std::string& bundle, const std::string& target);
/// The installs database with the tables and columns that the ledger offers, and no rows.
void makeInstallsDB(const std::string& path = installsDB);
/// Runs SQL; each row of the answer as text, columns joined by "|", NULL as "NULL".
std::vector<std::string> sql(const std::string& statement, const std::string& path = installsDB);

/// Mounts one more drive of a size such as "1m" at "/Volumes/<name>". Only where `hasMounts()`.
void plug(const std::string& name, const std::string& size, bool readOnly = false);
/// Pulls a drive out, whoever uses it.
void unplug(const std::string& name);

/// Puts a shell script in place of a tool.
void replaceTool(const std::string& path, const std::string& script);
void removeTool(const std::string& path);

// Running.

struct Run {
  int status = 0;  ///< exit status, or minus the number of the signal that ended it
  std::string out;
  std::string err;
};

struct RunOptions {
  std::optional<std::string> input = "";  ///< absent: standard input is closed
  std::string folder = home;
  std::vector<std::string> environment = {};  ///< "NAME=value", beside what is there
  bool mayMount = false;  ///< as a Mac lets anyone attach an image; the room's tool has to mount it
};

/// Runs a program as an ordinary person, whom permissions bind.
Run run(const std::vector<std::string>& command, const RunOptions& options = {});
/// Runs `quarn` by its bare name.
Run quarn(const std::vector<std::string>& arguments, const RunOptions& options = {});
/// A script of `/bin/sh`.
Run shell(const std::string& script);

/// A program that runs beside the test; killed and reaped when it goes.
class Background {
 public:
  explicit Background(const std::vector<std::string>& command);
  ~Background();
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;
  pid_t pid() const { return pid_; }
  /// Its exit status, or minus the number of the signal that ended it.
  int wait();

 private:
  pid_t pid_;
  std::optional<int> status_;
};

/// Takes from the calling process what lets it pass over permissions, and mount. For a child that does
/// nothing else.
void becomeOrdinary(bool mayMount = false);

// Looking.

bool exists(const std::string& path);  ///< a dangling link exists
bool isLink(const std::string& path);
std::string target(const std::string& link);  ///< empty if there is no link
std::string read(const std::string& path);
/// Every item at and below `path`, a line each, sorted: kind, mode, size, relative path, link target, and
/// a sum of the content. Equal trees give equal lists.
std::vector<std::string> tree(const std::string& path);
/// Waits up to `seconds` for something to exist; whether it does.
bool appears(const std::string& path, double seconds = 60);

}  // namespace scene
