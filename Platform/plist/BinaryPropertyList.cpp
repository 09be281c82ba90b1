#include <algorithm>
#include <bit>

#include "Platform/plist/BinaryCursor.h"
#include "Platform/plist/Formats.h"
#include "Platform/plist/XMLEncoding.h"

// The format: the signature, the values, a table of their offsets, and a trailer of 32 bytes. A value begins
// with a marker byte. The upper half of the marker is the kind, the lower half usually the count. A container
// holds the numbers of other values. All numbers are big-endian.
namespace quarn::BinaryPropertyList {

namespace {

using namespace PropertyList;

constexpr std::size_t trailerSize = 32;
/// How much the values may take beyond the size of the list. A value that two places refer to is copied to
/// both, so without this limit a few hundred bytes could fill any memory.
constexpr std::size_t largestExcess = std::size_t{1} << 26;
/// What a value counts in addition to its content.
constexpr std::size_t sizeOfValue = 64;

bool isASCII(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
}

/// Converts an integer of 1, 2, 4, 8 or 16 bytes. Those of up to 4 bytes are unsigned.
Integer integerFrom(std::string_view bytes) {
  if (bytes.size() == 16) {
    return {static_cast<std::int64_t>(numberFrom(bytes.substr(0, 8))), numberFrom(bytes.substr(8))};
  }
  const std::uint64_t low = numberFrom(bytes);
  return {bytes.size() == 8 && low >> 63 ? -1 : 0, low};
}

double doubleFrom(std::string_view bytes) {
  return std::bit_cast<double>(numberFrom(bytes));
}

/// Reads the values. A function that returns nothing has met an error; the whole read then fails.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes), left_(bytes.size() + largestExcess) {}

  std::optional<Value> document() {
    if (bytes_.size() < signature.size() + trailerSize) return std::nullopt;
    const auto trailer = bytes_.substr(bytes_.size() - trailerSize);
    // The trailer: 5 unused bytes, a version, the two widths, the number of values, the number of the root
    // value, and the offset of the table.
    offsetWidth_ = numberFrom(trailer.substr(6, 1));
    referenceWidth_ = numberFrom(trailer.substr(7, 1));
    const auto count = numberFrom(trailer.substr(8, 8));
    const auto root = numberFrom(trailer.substr(16, 8));
    const auto tableStart = numberFrom(trailer.substr(24, 8));
    if (!areWidths() || !isTable(tableStart, count)) return std::nullopt;
    values_ = bytes_.substr(0, tableStart);
    table_ = bytes_.substr(tableStart, count * offsetWidth_);
    return value(root);
  }

 private:
  bool areWidths() const {
    return std::min(offsetWidth_, referenceWidth_) >= 1 && std::max(offsetWidth_, referenceWidth_) <= 8;
  }

  /// Returns whether the table fills the space between the values and the trailer exactly.
  bool isTable(std::uint64_t start, std::uint64_t count) const {
    const auto end = bytes_.size() - trailerSize;
    return start <= end && count <= end / offsetWidth_ && count * offsetWidth_ == end - start;
  }

  std::optional<Value> value(std::uint64_t number) {
    // Every number and offset comes from the file, so each is checked before it is used.
    if (number >= table_.size() / offsetWidth_) return std::nullopt;
    const auto offset = numberFrom(table_.substr(number * offsetWidth_, offsetWidth_));
    if (offset < signature.size() || offset >= values_.size()) return std::nullopt;
    const auto marker = static_cast<unsigned char>(values_[offset]);
    BinaryCursor content(values_.substr(offset + 1));
    if (!pay(sizeOfValue)) return std::nullopt;
    switch (marker >> 4) {
      case 0x0:
        return single(marker);
      case 0x1:
        return integer(content, marker);
      case 0x2:
      case 0x3:
        return real(content, marker);
      case 0x8:
        return uid(content, marker);
      case 0xA:
      case 0xC:  // a set, which becomes an array
        return array(content, marker);
      case 0xD:
        return dictionary(content, marker);
      default:
        return text(content, marker);
    }
  }

  /// Takes bytes from the allowance. Returns false if it is used up.
  bool pay(std::size_t bytes) {
    const bool isEnough = bytes <= left_;
    left_ -= isEnough ? bytes : 0;
    return isEnough;
  }

  static std::optional<Value> single(unsigned marker) {
    if (marker == 0x00) return Value{};
    if (marker == 0x08) return Value{false};
    if (marker == 0x09) return Value{true};
    return std::nullopt;
  }

  static std::optional<Value> integer(BinaryCursor& content, unsigned marker) {
    const auto bytes = marker <= 0x14 ? content.bytes(std::uint64_t{1} << (marker & 0xF)) : std::nullopt;
    if (!bytes) return std::nullopt;
    return Value{integerFrom(*bytes)};
  }

  /// Reads a real number or a date, which is a number of seconds.
  static std::optional<Value> real(BinaryCursor& content, unsigned marker) {
    const auto bytes = content.bytes(marker == 0x22 ? 4 : 8);
    if (!bytes) return std::nullopt;
    if (marker == 0x22)
      return Value{double{std::bit_cast<float>(static_cast<std::uint32_t>(numberFrom(*bytes)))}};
    if (marker == 0x23) return Value{doubleFrom(*bytes)};
    if (marker == 0x33) return Value{Date{doubleFrom(*bytes)}};
    return std::nullopt;
  }

  static std::optional<Value> uid(BinaryCursor& content, unsigned marker) {
    const auto bytes = content.bytes((marker & 0xF) + 1);
    // A wider UID is accepted as long as its value fits 32 bits.
    if (!bytes || bytes->size() > 8 || numberFrom(*bytes) >> 32 != 0) return std::nullopt;
    return Value{UID{static_cast<std::uint32_t>(numberFrom(*bytes))}};
  }

  /// Reads a text or data.
  std::optional<Value> text(BinaryCursor& content, unsigned marker) {
    const auto kind = marker >> 4;
    if (kind < 0x4 || kind > 0x6) return std::nullopt;
    const auto bytes = content.counted(marker, kind == 0x6 ? 2 : 1);
    if (!bytes || !pay(bytes->size())) return std::nullopt;
    if (kind == 0x4) return Value{Data{std::string(*bytes)}};
    if (kind == 0x5 && !isASCII(*bytes)) return std::nullopt;
    auto decoded = kind == 0x5 ? std::string(*bytes) : XMLEncoding::decodedUTF16(*bytes);
    if (!decoded) return std::nullopt;
    return Value{*std::move(decoded)};
  }

  std::optional<Value> array(BinaryCursor& content, unsigned marker) {
    const auto items = content.counted(marker, referenceWidth_);
    // Containers may refer to themselves. This bound ends such a list, and protects the stack.
    if (!items || ++nesting_ > deepestNesting) return std::nullopt;
    Array result;
    for (std::size_t start = 0; start < items->size(); start += referenceWidth_) {
      auto item = referred(*items, start);
      if (!item) return std::nullopt;
      result.push_back(*std::move(item));
    }
    --nesting_;
    return Value{std::move(result)};
  }

  /// Reads a dictionary. All references to keys come before those to values.
  std::optional<Value> dictionary(BinaryCursor& content, unsigned marker) {
    const auto pairs = content.counted(marker, 2 * referenceWidth_);
    if (!pairs || ++nesting_ > deepestNesting) return std::nullopt;
    Dictionary result;
    for (std::size_t start = 0; start < pairs->size() / 2; start += referenceWidth_) {
      auto key = referred(*pairs, start);
      auto item = key ? referred(*pairs, pairs->size() / 2 + start) : std::nullopt;
      auto* name = key ? std::get_if<std::string>(&key->content) : nullptr;
      if (!item || !name || name->find('\0') != std::string::npos) return std::nullopt;
      // `emplace` keeps the value that is there: the first of equal keys counts.
      result.emplace(std::move(*name), *std::move(item));
    }
    --nesting_;
    return Value{std::move(result)};
  }

  std::optional<Value> referred(std::string_view references, std::size_t start) {
    return value(numberFrom(references.substr(start, referenceWidth_)));
  }

  std::string_view bytes_;
  std::string_view values_;
  std::string_view table_;
  std::size_t offsetWidth_ = 0;
  std::size_t referenceWidth_ = 0;
  std::size_t left_;
  int nesting_ = 0;
};

}  // namespace

std::optional<Value> parse(std::string_view bytes) {
  return Reader(bytes).document();
}

}  // namespace quarn::BinaryPropertyList
