#include "Accounts.h"

#include <fstream>
#include <sstream>

namespace quarn::room::Accounts {

namespace {

// Both tables begin with name:password:number.
std::string othersThan(const std::string& table, const std::string& name, const std::string& number) {
  std::ifstream file(table);
  std::string others;
  for (std::string line; std::getline(file, line);) {
    std::istringstream fields(line);
    std::string lineName, password, lineNumber;
    std::getline(fields, lineName, ':');
    std::getline(fields, password, ':');
    std::getline(fields, lineNumber, ':');
    if (lineName != name && lineNumber != number) others += line + "\n";
  }
  return others;
}

}  // namespace

std::string passwd(const std::string& hostTable, unsigned uid, unsigned gid) {
  const std::string number = std::to_string(uid);
  return "me:x:" + number + ":" + std::to_string(gid) + ":Me:/Users/me:/bin/bash\n" +
         othersThan(hostTable, "me", number);
}

std::string group(const std::string& hostTable, unsigned gid) {
  const std::string number = std::to_string(gid);
  return "staff:x:" + number + ":me\n" + othersThan(hostTable, "staff", number);
}

}  // namespace quarn::room::Accounts
