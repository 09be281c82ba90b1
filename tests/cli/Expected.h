#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include "tests/support/Patterns.h"
#include "tests/support/Scene.h"

/// How the expectations of the command tests are written: a whole run as one text, so that a test
/// states all that is seen of it and a failure shows the difference line by line.
namespace expected {

inline std::string shown(const scene::Run& run) {
  return "status " + std::to_string(run.status) + "\n--- out\n" + run.out + "--- err\n" + run.err;
}

/// A run that printed just this and succeeded.
inline std::string printed(const std::string& out) {
  return shown({0, out, ""});
}

/// A run that ended with the error line, after printing `out`.
inline std::string failed(const std::string& message, const std::string& out = "") {
  return shown({1, out, "error\t" + message + "\n"});
}

/// The same text with every elapsed time as "#.#s".
inline std::string timeless(const std::string& text) {
  return patterns::replace(text, "ok in [0-9]+\\.[0-9]s", "ok in #.#s");
}

inline std::string grouped(const std::string& digits) {
  std::string text;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) text += ',';
    text += digits[i];
  }
  return text;
}

/// `hundredths` of a unit with at most two decimals.
inline std::string decimals(std::int64_t hundredths) {
  std::string fraction = std::to_string(hundredths % 100 + 100).substr(1);
  while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
  return grouped(std::to_string(hundredths / 100)) + (fraction.empty() ? "" : "." + fraction);
}

/// A byte count as people read it.
inline std::string size(std::int64_t bytes) {
  if (bytes == 0) return "Zero KB";
  const std::int64_t kilobytes = (bytes + 500) / 1000;
  if (kilobytes <= 999) return std::to_string(kilobytes) + " KB";
  const std::int64_t tenthsOfMegabytes = (bytes + 50'000) / 100'000;
  if (tenthsOfMegabytes <= 9999) return decimals(tenthsOfMegabytes * 10) + " MB";
  return decimals((bytes + 5'000'000) / 10'000'000) + " GB";
}

/// What the files at and below `path` take on their disk, those with hidden names left out.
inline std::int64_t allocated(const std::filesystem::path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || S_ISLNK(status.st_mode)) return 0;
  if (!S_ISDIR(status.st_mode)) return static_cast<std::int64_t>(status.st_blocks) * 512;
  std::int64_t total = 0;
  for (const auto& item : std::filesystem::directory_iterator(path)) {
    if (item.path().filename().string().front() != '.') total += allocated(item.path());
  }
  return total;
}

inline std::string sizeOf(const std::string& path) {
  return size(allocated(path));
}

inline struct statvfs volume(const std::string& path) {
  struct statvfs status {};
  ::statvfs(path.c_str(), &status);
  return status;
}

inline std::int64_t freeBytes(const std::string& path) {
  const auto status = volume(path);
  return static_cast<std::int64_t>(status.f_bavail) * static_cast<std::int64_t>(status.f_frsize);
}

inline std::int64_t totalBytes(const std::string& path) {
  const auto status = volume(path);
  return static_cast<std::int64_t>(status.f_blocks) * static_cast<std::int64_t>(status.f_frsize);
}

}  // namespace expected
