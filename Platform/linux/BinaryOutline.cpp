#include "Platform/linux/BinaryOutline.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quarn::BinaryOutline {

namespace {

constexpr int deepestNesting = 512;
constexpr std::uint64_t largestSize = std::uint64_t{1} << 26;

/// The upper half of the byte that begins a value.
enum class Kind { data = 4, text = 5, wideText = 6, identifier = 8, array = 10, set = 12, dictionary = 13 };

struct Head {
  Kind kind;
  std::uint64_t count;
  std::uint64_t start;
};

/// Answers nothing where a number lies outside of the list or something is too large.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {}

  bool read() {
    constexpr std::size_t trailerSize = 32;
    if (bytes_.size() < trailerSize) return false;
    const auto trailer = bytes_.size() - trailerSize;
    offsetWidth_ = *number(trailer + 6, 1);
    referenceWidth_ = *number(trailer + 7, 1);
    tableStart_ = *number(trailer + 24, 8);
    const auto count = *number(trailer + 8, 8);
    if (count > bytes_.size()) return false;
    sizes_.resize(count);
    return size(*number(trailer + 16, 8), 0).has_value();
  }

 private:
  std::optional<std::uint64_t> number(std::uint64_t start, std::uint64_t width) const {
    if (width < 1 || width > 8 || start > bytes_.size() || width > bytes_.size() - start) return std::nullopt;
    std::uint64_t value = 0;
    for (const char byte : bytes_.substr(start, width)) value = value << 8 | static_cast<unsigned char>(byte);
    return value;
  }

  /// What a value takes with all that it refers to, in values and bytes of content.
  std::optional<std::uint64_t> size(std::uint64_t object, int nesting) {
    if (object >= sizes_.size() || nesting > deepestNesting) return std::nullopt;
    if (!sizes_[object]) sizes_[object] = measuredSize(object, nesting);
    return sizes_[object];
  }

  std::optional<std::uint64_t> measuredSize(std::uint64_t object, int nesting) {
    const auto found = head(object);
    if (!found || found->count > bytes_.size()) return std::nullopt;
    if (found->kind == Kind::dictionary) {
      for (std::uint64_t i = 0; i < found->count; ++i) {
        if (!isKey(number(found->start + i * referenceWidth_, referenceWidth_))) return std::nullopt;
      }
      return sizeOfContainer(found->start, 2 * found->count, nesting);
    }
    if (found->kind == Kind::array || found->kind == Kind::set) {
      return sizeOfContainer(found->start, found->count, nesting);
    }
    return 1 + found->count;
  }

  /// A key is a text without a NUL, at which libplist would end the whole process.
  bool isKey(std::optional<std::uint64_t> object) const {
    const auto found = object ? head(*object) : std::nullopt;
    if (!found || (found->kind != Kind::text && found->kind != Kind::wideText)) return false;
    const std::uint64_t width = found->kind == Kind::text ? 1 : 2;
    for (std::uint64_t i = 0; i < found->count; ++i) {
      if (number(found->start + i * width, width).value_or(0) == 0) return false;
    }
    return true;
  }

  /// Where the content of a value begins, and how many elements, characters or bytes it has.
  std::optional<Head> head(std::uint64_t object) const {
    if (object >= sizes_.size()) return std::nullopt;
    const auto start = number(tableStart_ + object * offsetWidth_, offsetWidth_);
    const auto marker = start ? number(*start, 1) : std::nullopt;
    if (!marker) return std::nullopt;
    Head found{static_cast<Kind>(*marker >> 4), 0, *start + 1};
    const bool isCounted = found.kind >= Kind::data && found.kind != Kind::identifier;
    const auto count = isCounted ? countOf(*marker & 0xF, found.start) : std::uint64_t{0};
    if (!count) return std::nullopt;
    found.count = *count;
    return found;
  }

  /// A count of 15 or more is a number of its own behind the marker.
  std::optional<std::uint64_t> countOf(std::uint64_t inMarker, std::uint64_t& start) const {
    if (inMarker != 0xF) return inMarker;
    const auto marker = number(start, 1);
    if (!marker || *marker >> 4 != 1) return std::nullopt;
    const auto width = std::uint64_t{1} << (*marker & 0xF);
    const auto count = number(start + 1, width);
    start += 1 + width;
    return count;
  }

  std::optional<std::uint64_t> sizeOfContainer(std::uint64_t start, std::uint64_t references, int nesting) {
    std::uint64_t total = 1;
    for (std::uint64_t i = 0; i < references; ++i) {
      const auto object = number(start + i * referenceWidth_, referenceWidth_);
      const auto part = object ? size(*object, nesting + 1) : std::nullopt;
      if (!part || (total += *part) > largestSize) return std::nullopt;
    }
    return total;
  }

  std::string_view bytes_;
  std::uint64_t offsetWidth_ = 0;
  std::uint64_t referenceWidth_ = 0;
  std::uint64_t tableStart_ = 0;
  std::vector<std::optional<std::uint64_t>> sizes_;
};

}  // namespace

bool isReasonable(std::string_view bytes) {
  return Reader(bytes).read();
}

}  // namespace quarn::BinaryOutline
