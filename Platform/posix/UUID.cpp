#include "Platform/UUID.h"

#include <uuid/uuid.h>

namespace quarn::UUID {

std::string make() {
  uuid_t identifier;
  uuid_generate_random(identifier);
  char text[37];
  uuid_unparse_upper(identifier, text);
  return text;
}

}  // namespace quarn::UUID
