#include "Platform/FittingName.h"

namespace quarn {
namespace {

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

std::string FittingName::of(std::string name, std::string_view end) {
  std::size_t room = end.size() < longest ? longest - end.size() : 0;
  if (name.size() > room) {
    while (room > 0 && continuesCharacter(name[room])) --room;
    name.resize(room);
  }
  return name.append(end);
}

}  // namespace quarn
