#include "QuarnCore/foundation/EntryName.h"

namespace quarn {

bool EntryName::isOne(std::string_view text) {
  return !text.empty() && text != "." && text != ".." &&
         text.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

}  // namespace quarn
