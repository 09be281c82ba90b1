#include "QuarnCore/installer/InstallAction.h"

#include <algorithm>

namespace quarn::InstallAction {
namespace {

constexpr std::string_view installedAppWord = "installed-app";
constexpr std::string_view installedPackageWord = "installed-pkg";
constexpr std::string_view ranScriptWord = "ran-script";
constexpr std::string_view externalizeFailedWord = "externalize-failed";
constexpr std::string_view trashWord = "trash";
constexpr std::string_view forgetReceiptWord = "forget-receipt";

/// Returns what stands behind a line's word and its tab.
std::optional<std::string_view> behind(std::string_view word, std::string_view line) {
  if (!line.starts_with(word) || line.size() == word.size() || line[word.size()] != '\t') return std::nullopt;
  return line.substr(word.size() + 1);
}

std::optional<std::string> textBehind(std::string_view word, std::string_view line) {
  const auto text = behind(word, line);
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

/// Splits at tabs and leaves out empty fields.
std::vector<std::string> fieldsOf(std::string_view text) {
  std::vector<std::string> fields;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find('\t'), text.size());
    if (length > 0) fields.emplace_back(text.substr(0, length));
    text.remove_prefix(std::min(length + 1, text.size()));
  }
  return fields;
}

}  // namespace

std::string line(std::string_view word, const std::vector<std::string>& fields) {
  std::string text(word);
  for (const std::string& field : fields) text += "\t" + field;
  return text;
}

std::string installedApp(const Path& launcher, const Path& destination) {
  return line(installedAppWord, {launcher.text(), destination.text()});
}

std::string installedPackage(const Path& package) {
  return line(installedPackageWord, {package.text()});
}

std::string ranScript(const Path& script) {
  return line(ranScriptWord, {script.text()});
}

std::string externalizeFailed(const Path& app, const LocalizedError& error) {
  return line(externalizeFailedWord, {app.text(), error.localizedDescription()});
}

std::vector<std::string> installedPaths(std::string_view line) {
  std::vector<std::string> fields = fieldsOf(line);
  if (fields.size() < 3 || fields[0] != installedAppWord) return {};
  const bool areWhole = fields[1].starts_with('/') && fields[2].starts_with('/');
  return areWhole ? std::vector<std::string>{fields[1], fields[2]} : std::vector<std::string>();
}

bool isInstalledPackage(std::string_view line) {
  return behind(installedPackageWord, line).has_value();
}

bool isExternalizeFailed(std::string_view line) {
  return behind(externalizeFailedWord, line).has_value();
}

std::string trash(const std::string& path) {
  return line(trashWord, {path});
}

std::string forgetReceipt(const std::string& packageID) {
  return line(forgetReceiptWord, {packageID});
}

std::optional<std::string> trashed(std::string_view line) {
  return textBehind(trashWord, line);
}

std::optional<std::string> forgottenReceipt(std::string_view line) {
  return textBehind(forgetReceiptWord, line);
}

}  // namespace quarn::InstallAction
