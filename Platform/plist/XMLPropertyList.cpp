#include "Platform/plist/Formats.h"
#include "Platform/plist/XMLScalars.h"
#include "Platform/plist/XMLScanner.h"

namespace quarn::XMLPropertyList {

namespace {

using namespace PropertyList;
using Tag = XMLScanner::Tag;

template <class Content>
std::optional<Value> asValue(std::optional<Content> content) {
  if (!content) return std::nullopt;
  return Value{*std::move(content)};
}

/// Returns a UID for a dictionary whose only key is CF$UID, which is how an archive in XML writes a UID; else
/// the dictionary.
Value dictionaryOrUID(Dictionary members) {
  if (members.size() == 1 && members.begin()->first == "CF$UID") {
    const Value& number = members.begin()->second;
    if (const auto* whole = number.as<Integer>()) return {UID{static_cast<std::uint32_t>(whole->low)}};
    if (const auto* real = number.as<double>()) return {XMLScalars::uid(*real)};
  }
  return {std::move(members)};
}

/// Reads the values. A function that returns false or nothing has met an error; the whole read then fails.
class Reader {
 public:
  explicit Reader(std::string_view text) : scanner_(text) {}

  /// Reads the first value and ignores whatever follows.
  std::optional<Value> document() {
    if (!scanner_.skipProlog()) return std::nullopt;
    const auto tag = scanner_.openingTag();
    if (!tag) return std::nullopt;
    return tag->name == "plist" ? onlyValueOf(*tag) : value(*tag);
  }

 private:
  // An empty `<plist/>` contains no value.
  std::optional<Value> onlyValueOf(const Tag& plist) {
    if (plist.isEmpty) return std::nullopt;
    auto found = nextValue();
    if (!found || !scanner_.skipToTag() || !scanner_.takeClosingTag(plist.name)) return std::nullopt;
    return found;
  }

  std::optional<Value> nextValue() {
    const auto tag = scanner_.skipToTag() ? scanner_.openingTag() : std::nullopt;
    if (!tag) return std::nullopt;
    return value(*tag);
  }

  std::optional<Value> value(const Tag& tag) {
    if (tag.name == "string") return asValue(text(tag));
    if (tag.name == "dict") return dictionary(tag);
    if (tag.name == "array") return array(tag);
    if (tag.name == "true") return boolean(tag, true);
    if (tag.name == "false") return boolean(tag, false);
    if (tag.name == "integer") return scalar(tag, XMLScalars::integer);
    if (tag.name == "real") return scalar(tag, XMLScalars::real);
    if (tag.name == "date") return scalar(tag, XMLScalars::date);
    if (tag.name == "data") return scalar(tag, XMLScalars::data);
    return std::nullopt;
  }

  std::optional<Value> dictionary(const Tag& tag) {
    Dictionary members;
    const bool isRead = elements(tag, [&] {
      const auto keyTag = scanner_.openingTag();
      if (!keyTag || keyTag->name != "key") return false;
      auto key = text(*keyTag);
      auto item = key ? nextValue() : std::nullopt;
      // The last of equal keys counts, as on a Mac.
      if (item) members.insert_or_assign(*std::move(key), *std::move(item));
      return item.has_value();
    });
    if (!isRead) return std::nullopt;
    return dictionaryOrUID(std::move(members));
  }

  std::optional<Value> array(const Tag& tag) {
    Array items;
    const bool isRead = elements(tag, [&] {
      auto item = nextValue();
      if (item) items.push_back(*std::move(item));
      return item.has_value();
    });
    if (!isRead) return std::nullopt;
    return Value{std::move(items)};
  }

  /// Calls `element` at each tag until the one that closes the container.
  template <class Element>
  bool elements(const Tag& tag, const Element& element) {
    // The reader is recursive, so this bound also protects the stack.
    if (nesting_ == deepestNesting) return false;
    if (tag.isEmpty) return true;
    ++nesting_;
    while (scanner_.skipToTag()) {
      if (scanner_.takeClosingTag(tag.name)) {
        --nesting_;
        return true;
      }
      if (!element()) return false;
    }
    return false;
  }

  std::optional<Value> boolean(const Tag& tag, bool content) {
    if (!tag.isEmpty && !scanner_.takeClosingTag(tag.name)) return std::nullopt;
    return Value{content};
  }

  template <class Read>
  std::optional<Value> scalar(const Tag& tag, const Read& read) {
    // A Mac refuses the empty form, such as <integer/>, for these types.
    if (tag.isEmpty) return std::nullopt;
    const auto content = scanner_.content();
    if (!scanner_.takeClosingTag(tag.name)) return std::nullopt;
    return asValue(read(content));
  }

  std::optional<std::string> text(const Tag& tag) {
    if (tag.isEmpty) return std::string();
    auto content = scanner_.text();
    if (!content || !scanner_.takeClosingTag(tag.name)) return std::nullopt;
    return content;
  }

  XMLScanner scanner_;
  int nesting_ = 0;
};

}  // namespace

std::optional<Value> parse(std::string_view text) {
  return Reader(text).document();
}

}  // namespace quarn::XMLPropertyList
