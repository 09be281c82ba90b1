#include "Environment.h"

#include <algorithm>
#include <array>
#include <unistd.h>

namespace quarn::room::Environment {

namespace {

constexpr std::array<const char*, 26> leftOut = {"HOME",
                                                 "USER",
                                                 "LOGNAME",
                                                 "USERNAME",
                                                 "SHELL",
                                                 "PATH",
                                                 "PWD",
                                                 "OLDPWD",
                                                 "TMPDIR",
                                                 "TMP",
                                                 "TEMP",
                                                 "LANG",
                                                 "LANGUAGE",
                                                 "MAIL",
                                                 "BASH_ENV",
                                                 "ENV",
                                                 "CDPATH",
                                                 "IFS",
                                                 "ICU_DATA",
                                                 "PYTHONHOME",
                                                 "POSIXLY_CORRECT",
                                                 "QUARN_ROOM",
                                                 "QUARN_ROOM_FORCE",
                                                 "SUDO_USER",
                                                 "SUDO_COMMAND",
                                                 "CFFIXED_USER_HOME"};
constexpr std::array<const char*, 4> leftOutFamilies = {"LD_", "LC_", "XDG_", "PROOT_"};

bool isLeftOut(const std::string& variable) {
  const std::string name = variable.substr(0, variable.find('='));
  return std::find(leftOut.begin(), leftOut.end(), name) != leftOut.end() ||
         std::any_of(leftOutFamilies.begin(), leftOutFamilies.end(),
                     [&](const std::string& family) { return name.rfind(family, 0) == 0; });
}

}  // namespace

std::vector<std::string> forRoom(const std::string& kind, const std::string& cwd) {
  std::vector<std::string> all = {"HOME=/Users/me",
                                  "USER=me",
                                  "LOGNAME=me",
                                  "SHELL=/bin/bash",
                                  "PATH=/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
                                  "LANG=C.UTF-8",
                                  "PWD=" + cwd,
                                  "QUARN_ROOM=" + kind};
  for (char** variable = environ; *variable != nullptr; ++variable)
    if (!isLeftOut(*variable)) all.emplace_back(*variable);
  return all;
}

}  // namespace quarn::room::Environment
