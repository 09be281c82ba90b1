#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The program of a launcher: opens the application that the launcher was made for.
namespace quarn::Launcher {

/// What the person is told if nothing is opened.
struct Complaint {
  std::string sentence;
};

/// The largest target file that is read. No path is as long.
inline constexpr std::size_t largestTargetFile = 65'536;

/// Returns the path in the bytes of a target file, which anyone may have written: an absolute path without a
/// NUL. Throws a `Complaint` about the launcher `name` if there is none.
std::string targetIn(std::string_view bytes, const std::string& name);

/// Returns the bundle that a program lies in, such as "/Applications/Foo.app" for the program
/// "/Applications/Foo.app/Contents/MacOS/Foo", or nothing.
std::string bundleAround(const std::string& program);

/// Opens the application of the launcher that this program lies in and hands the arguments on. Where an
/// application takes the place of the program that starts it, this doesn't return. Throws a `Complaint`.
void open(const std::vector<std::string>& arguments);

}  // namespace quarn::Launcher
