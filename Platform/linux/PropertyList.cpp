#include "Platform/PropertyList.h"

#include <cstdlib>
#include <dlfcn.h>
#include <limits>
#include <memory>
#include <plist/plist.h>

#include "Platform/PlatformError.h"
#include "Platform/Text.h"
#include "Platform/linux/BinaryOutline.h"
#include "Platform/linux/XMLOutline.h"

namespace quarn::PropertyList {

namespace {

/// libplist, loaded when the first list is read: a command that reads none shouldn't pay for it.
class Library {
 public:
  static const Library& loaded() {
    static const Library library;
    return library;
  }

 private:
  struct Close {
    void operator()(void* handle) const { dlclose(handle); }
  };

  static void* open() {
    auto* handle = dlopen(QUARN_PLIST_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (!handle) throw PlatformError("libplist", 1, "The library “" QUARN_PLIST_LIBRARY "” can’t be loaded.");
    return handle;
  }

  template <class Function>
  void find(Function*& function, const char* name) {
    function = reinterpret_cast<Function*>(dlsym(handle_.get(), name));
    if (!function) throw PlatformError("libplist", 2, std::string("libplist doesn’t offer “") + name + "”.");
  }

  Library() {
    find(fromXML, "plist_from_xml");
    find(fromBinary, "plist_from_bin");
    find(release, "plist_free");
    find(typeOf, "plist_get_node_type");
    find(newIterator, "plist_dict_new_iter");
    find(nextItem, "plist_dict_next_item");
    find(text, "plist_get_string_ptr");
  }

  std::unique_ptr<void, Close> handle_{open()};

 public:
  decltype(&plist_from_xml) fromXML;
  decltype(&plist_from_bin) fromBinary;
  decltype(&plist_free) release;
  decltype(&plist_get_node_type) typeOf;
  decltype(&plist_dict_new_iter) newIterator;
  decltype(&plist_dict_next_item) nextItem;
  decltype(&plist_get_string_ptr) text;
};

struct Release {
  void operator()(void* node) const { Library::loaded().release(node); }
};
struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
using Node = std::unique_ptr<void, Release>;

Node parse(std::string_view bytes) {
  if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) return {};
  const auto& library = Library::loaded();
  plist_t node = nullptr;
  if (bytes.starts_with("bplist00")) {
    // libplist copies a value to each place that refers to it, however many these are.
    if (!BinaryOutline::isReasonable(bytes)) return {};
    library.fromBinary(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &node);
    return Node(node);
  }
  // libplist takes the first value and doesn't look at what follows, so the rest is checked here.
  const auto xml = Text::decodingFile(bytes);
  if (!xml || xml->find('\0') != std::string::npos || !XMLOutline::isComplete(*xml)) return {};
  library.fromXML(xml->data(), static_cast<std::uint32_t>(xml->size()), &node);
  return Node(node);
}

std::map<std::string, std::string> textsOf(plist_t dictionary) {
  const auto& library = Library::loaded();
  std::map<std::string, std::string> found;
  plist_dict_iter position = nullptr;
  library.newIterator(dictionary, &position);
  const std::unique_ptr<void, Free> positionOwner(position);
  for (;;) {
    char* key = nullptr;
    plist_t value = nullptr;
    library.nextItem(dictionary, position, &key, &value);
    const std::unique_ptr<char, Free> keyOwner(key);
    if (!value) return found;
    if (library.typeOf(value) != PLIST_STRING) continue;
    std::uint64_t length = 0;
    const char* text = library.text(value, &length);
    found.emplace(key, std::string(text, length));
  }
}

}  // namespace

std::optional<std::map<std::string, std::string>> texts(std::string_view bytes) {
  if (bytes.empty()) return std::nullopt;
  if (bytes.find_first_not_of(" \t\n\v\f\r") == std::string_view::npos) return {{}};
  const auto root = parse(bytes);
  if (!root || Library::loaded().typeOf(root.get()) != PLIST_DICT) return std::nullopt;
  return textsOf(root.get());
}

}  // namespace quarn::PropertyList
