#include "Platform/posix/CurrentFolder.h"

#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace quarn {
namespace {

struct Free {
  void operator()(char* text) const { std::free(text); }
};

}  // namespace

Path currentFolder() {
  const std::unique_ptr<char, Free> text(::getcwd(nullptr, 0));
  // A folder that was removed has no path any more.
  return Path(text ? text.get() : "/");
}

}  // namespace quarn
