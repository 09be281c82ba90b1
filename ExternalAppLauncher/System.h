#pragma once

#include <optional>
#include <string>
#include <vector>

/// What the launcher asks of the operating system.
namespace quarn::System {

/// Returns the path of the running program with every link resolved, or nothing if the system doesn't tell.
std::string executable();

/// Returns 0 if something is at the path, else the error number of the attempt to look. Follows links.
int whyNotThere(const std::string& path);
bool isRegularFile(const std::string& path);
/// Returns whether a folder directly below /Volumes is a drive: something is mounted there, or it is a link.
bool isDrive(const std::string& folder);
/// Returns up to `most` bytes of a regular file and one more if there are more; on failure nothing, and the
/// reason in `errno`. Never waits for a writer, as reading a FIFO would.
std::optional<std::string> read(const std::string& file, std::size_t most);
/// Returns the names in a folder without those that begin with a point.
std::vector<std::string> visibleNames(const std::string& folder);

/// Returns a sentence of the system for an error number.
std::string reason(int errorNumber);

/// Opens an application. Returns only if that failed, or if the application is another process: nothing if it
/// was opened, else the reason.
std::string open(const std::string& application, const std::vector<std::string>& arguments);

/// Tells the person who opened the launcher.
void tell(const std::string& sentence);

}  // namespace quarn::System
