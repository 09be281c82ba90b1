#include "tests/cli/UninstallNames.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "tests/support/Scene.h"

namespace homes {
namespace {

using namespace std::string_literals;

const std::string composed = "Caf\xC3\xA9", decomposed = "Cafe\xCC\x81";

const Lines& plainIdentifiers() {
  static const Lines all = {"com.example.foo", "com.foo.App", "org.example.Foo-Bar",
                            "com.example." + composed};
  return all;
}

const Lines& oddIdentifiers() {
  static const Lines all = {"",
                            ".",
                            "..",
                            "a/b",
                            "/",
                            "../../Documents",
                            "nul\0x"s,
                            "Quarn",
                            "quarn",
                            "com.foo.App.*",
                            "^com",
                            "[a-z]*",
                            "com.foo.(",
                            "com.example.foo ",
                            "tab\there",
                            "line\nfeed",
                            "quo\"te",
                            "back\\slash",
                            "-rf",
                            "$HOME",
                            "Foo",
                            "com.example.foo.externallauncher",
                            composed,
                            decomposed,
                            "*",
                            "com.anthropic.claudefordesktop",
                            "~",
                            "com.example.url-handler",
                            "c",
                            std::string(255, 'i'),
                            std::string(250, 'p'),
                            std::string(1 << 20, 'm'),
                            "/Users/me/Documents",
                            "com.apple"};
  return all;
}

const Lines& bundleNames() {
  static const Lines all = {"Foo",    "Foo Bar",  "F",     "F",         "F",           "AC:DC",
                            composed, decomposed, "Quarn", "quo\"te",   "tab\there",   "line\nfeed",
                            " ",      " Foo ",    ".",     "..",        "-n",          "$(touch x)",
                            "*",      "Foo.2",    "foo",   "Documents", "com.foo.App", std::string(250, 'n')};
  return all;
}

const Lines& listedNames() {
  static const Lines all = {"Foo",
                            "Foo Bar",
                            "Foo Bar Baz",
                            "..",
                            "../../Documents",
                            "a/b",
                            "nul\0x"s,
                            "Quarn",
                            " Quarn ",
                            "/",
                            "//",
                            "  ",
                            " .. ",
                            "tab\tname",
                            "line\nfeed",
                            "../Caches",
                            "Foo/../../Documents",
                            "Other",
                            composed + " 2",
                            decomposed + " 2",
                            "com.example.foo",
                            std::string(255, 'd'),
                            std::string(1 << 20, 'M')};
  return all;
}

const Lines& executables() {
  static const Lines all = {"Foo", "foo",        "FOO BAR", "",      ".",
                            "..",  "a/b",        "ssh",     "Trash", "../../Documents",
                            "npm", "nul\0x"s,    "Library", "Foo",   "ExternalAppLauncher",
                            "Foo", "com.foo.App"};
  return all;
}

std::string with(std::string text, int (*change)(int)) {
  for (char& letter : text)
    if (static_cast<unsigned char>(letter) < 0x80) letter = static_cast<char>(change(letter));
  return text;
}

int withoutSlash(int letter) {
  return letter == '/' ? ':' : letter;
}

std::string inOtherForm(std::string text) {
  const std::pair<std::string, std::string> forms[] = {{"\xC3\xA9", "e\xCC\x81"}, {"e\xCC\x81", "\xC3\xA9"}};
  for (const auto& [from, to] : forms)
    if (const auto at = text.find(from); at != std::string::npos) return text.replace(at, from.size(), to);
  return text + "\xCC\x81";
}

}  // namespace

std::string identifier(Dice& dice) {
  return dice.pick(dice.isOneIn(2) ? plainIdentifiers() : oddIdentifiers());
}
std::string bundleName(Dice& dice) {
  return dice.pick(bundleNames());
}
std::string listedName(Dice& dice) {
  return dice.pick(listedNames());
}
std::string executable(Dice& dice) {
  return dice.pick(executables());
}

bool isName(const std::string& text) {
  return !text.empty() && text != "." && text != ".." && text.size() <= scene::longestName() &&
         text.find('/') == std::string::npos && text.find('\0') == std::string::npos;
}

Lines exactNames(const std::string& word) {
  const std::string low = with(word, std::tolower);
  return {word,
          word + ".plist",
          word + ".savedState",
          word + ".0A-1B.plist",
          low + "-cli",
          low + "-cli-nodejs",
          low + "-nodejs",
          "." + low,
          "." + low + "rc"};
}

Lines lookAlikes(const std::string& word) {
  Lines all = {word + "2",
               word + ".helper",
               word + "-x",
               with(word, std::toupper),
               with(word, std::tolower),
               " " + word,
               word + " ",
               "." + word,
               ".." + word,
               word + "~",
               word + ".bak",
               inOtherForm(word),
               "group." + word,
               word + ".json",
               word + ".log",
               word + ".",
               word + "\n",
               "x" + word,
               word + ".plist.bak",
               "." + word + ".json.backup"};
  if (word.size() > 1 && static_cast<unsigned char>(word.back()) < 0x80)
    all.push_back(word.substr(0, word.size() - 1));
  // Where a program would be led that takes a slash for a colon, or stops at a NUL or a dot.
  all.push_back(with(word, withoutSlash));
  all.push_back(word.substr(0, word.find('\0')));
  all.push_back(word.substr(0, word.find('.')));
  return all;
}

}  // namespace homes
