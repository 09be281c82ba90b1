#include "Platform/linux/XMLOutline.h"

#include <vector>

namespace quarn::XMLOutline {

namespace {

constexpr std::size_t deepestNesting = 512;
constexpr std::string_view blanks = " \t\r\n";

/// Goes through a list tag by tag. Whatever answers false has met an error, and reading ends there.
class Reader {
 public:
  explicit Reader(std::string_view xml) : rest_(xml) {}

  bool read() {
    while (!rest_.empty()) {
      if (!content() || !markup()) return false;
    }
    return open_.empty() && values_ == 1;
  }

 private:
  bool isOutsideOfValue() const { return open_.empty() || (open_.size() == 1 && open_.front() == "plist"); }

  /// What stands before the next tag: outside of the value that may be blanks alone.
  bool content() {
    const auto text = rest_.substr(0, rest_.find('<'));
    rest_.remove_prefix(text.size());
    return !isOutsideOfValue() || text.find_first_not_of(blanks) == std::string_view::npos;
  }

  bool markup() {
    if (rest_.empty()) return true;
    if (rest_.starts_with("<!--")) return skipBehind("-->");
    if (rest_.starts_with("<![CDATA[")) return !isOutsideOfValue() && skipBehind("]]>");
    if (rest_.starts_with("<?")) return skipBehind("?>");
    if (rest_.starts_with("<!")) return isDeclarationSkipped();
    return tag();
  }

  bool skipBehind(std::string_view end) {
    const auto found = rest_.find(end);
    if (found == std::string_view::npos) return false;
    rest_.remove_prefix(found + end.size());
    return true;
  }

  bool isDeclarationSkipped() {
    const bool hasSubset = rest_.substr(0, rest_.find('>')).find('[') != std::string_view::npos;
    return skipBehind(hasSubset ? "]>" : ">");
  }

  bool tag() {
    auto text = rest_;
    if (!skipBehind(">")) return false;
    text = text.substr(1, text.size() - rest_.size() - 2);
    const bool closes = text.starts_with('/');
    const bool isEmpty = text.ends_with('/');
    if (closes) text.remove_prefix(1);
    const auto name = text.substr(0, text.find_first_of(" \t\r\n/"));
    if (closes) return close(name);
    return enter(name) && (!isEmpty || close(name));
  }

  bool enter(std::string_view name) {
    const bool isValue = isOutsideOfValue() && !(open_.empty() && name == "plist");
    if (isValue && ++values_ > 1) return false;
    open_.push_back(name);
    return open_.size() <= deepestNesting;
  }

  bool close(std::string_view name) {
    if (open_.empty() || open_.back() != name) return false;
    const bool lacksValue = name == "dict" && lastClosed_ == "key";
    open_.pop_back();
    lastClosed_ = name;
    return !lacksValue;
  }

  std::string_view rest_;
  std::vector<std::string_view> open_;
  std::string_view lastClosed_;
  int values_ = 0;
};

}  // namespace

bool isComplete(std::string_view xml) {
  return Reader(xml).read();
}

}  // namespace quarn::XMLOutline
