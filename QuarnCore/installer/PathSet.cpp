#include "QuarnCore/installer/PathSet.h"

#include <algorithm>
#include <cstring>

namespace quarn {
namespace {

struct Order {
  std::size_t shared;  ///< how many bytes two paths have in common
  int way;             ///< less than, equal to or greater than 0
};

int rankAt(std::string_view path, std::size_t position) {
  if (position >= path.size()) return 0;
  return path[position] == '/' ? 1 : 2 + static_cast<unsigned char>(path[position]);
}

/// Compares two paths of which the first `shared` bytes are known to be equal.
Order orderOf(std::string_view a, std::string_view b, std::size_t shared = 0) {
  constexpr std::size_t stride = 8;  // a comparison of so many bytes is a single instruction
  const std::size_t end = std::min(a.size(), b.size());
  while (shared + stride <= end && std::memcmp(a.data() + shared, b.data() + shared, stride) == 0)
    shared += stride;
  while (shared < end && a[shared] == b[shared]) ++shared;
  return {shared, rankAt(a, shared) - rankAt(b, shared)};
}

/// Returns the order of the paths at two cursors of which one or both have just been moved, as `order.way`
/// told. Both come behind the path that was left, and the one that shares more with it comes first. So
/// nothing is compared unless both share the same.
Order orderAfter(const Order& order, const PathSet::Cursor& x, const PathSet::Cursor& y) {
  const std::size_t ofX = order.way <= 0 ? x.shared() : order.shared;
  const std::size_t ofY = order.way >= 0 ? y.shared() : order.shared;
  if (ofX != ofY) return {std::min(ofX, ofY), ofX > ofY ? -1 : 1};
  if (order.way == 0 && x.own() == y.own()) return {x.path().size(), 0};
  return orderOf(x.path(), y.path(), ofX);
}

/// Calls `use` for each path of two sets, in path order, with what is known of it: whether the first and
/// whether the second set holds it.
template <class Use>
void merge(const PathSet& a, const PathSet& b, Use use) {
  PathSet::Cursor x(a), y(b);
  bool hasX = x.next(), hasY = y.next();
  Order order = orderOf(x.path(), y.path());
  while (hasX || hasY) {
    if (hasX != hasY) order.way = hasX ? -1 : 1;
    use(order.way <= 0 ? x.path() : y.path(), order.way <= 0, order.way >= 0);
    if (order.way <= 0) hasX = x.next();
    if (order.way >= 0) hasY = y.next();
    order = orderAfter(order, x, y);
  }
}

}  // namespace

bool PathSet::Cursor::next() {
  const bool goesOn = !rest_.empty();
  shared_ = goesOn ? number() : 0;
  const std::size_t length = goesOn ? number() : 0;
  own_ = rest_.substr(0, length);
  rest_.remove_prefix(length);
  path_.resize(shared_);
  path_.append(own_);
  return goesOn;
}

/// Seven bits in each byte, the lowest ones first; the eighth bit says that more follow.
std::size_t PathSet::Cursor::number() {
  std::size_t value = 0;
  for (unsigned shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    value |= static_cast<std::size_t>(byte & 0x7F) << shift;
    if (byte < 0x80) return value;
  }
}

void PathSet::addNumber(std::size_t number) {
  for (; number >= 0x80; number >>= 7) bytes_ += static_cast<char>(number | 0x80);
  bytes_ += static_cast<char>(number);
}

PathSet::PathSet(std::vector<std::string> paths) {
  std::sort(paths.begin(), paths.end(), precedesInPathOrder);
  for (const std::string& path : paths) append(path);
}

bool PathSet::append(std::string_view path) {
  const Order order = orderOf(last_, path);
  if (order.way >= 0) return false;
  addNumber(order.shared);
  addNumber(path.size() - order.shared);
  const std::string_view own = path.substr(order.shared);
  bytes_ += own;
  last_.resize(order.shared);
  last_ += own;
  ++count_;
  return true;
}

bool precedesInPathOrder(std::string_view a, std::string_view b) {
  return orderOf(a, b).way < 0;
}

bool isBelow(std::string_view path, std::string_view folder) {
  if (folder == "/") return path.size() > 1 && path.front() == '/';
  return !folder.empty() && path.starts_with(folder) && path.substr(folder.size()).starts_with('/');
}

PathSet united(const PathSet& a, const PathSet& b) {
  PathSet all;
  merge(a, b, [&all](std::string_view path, bool, bool) { all.append(path); });
  return all;
}

std::vector<std::string> difference(const PathSet& paths, const PathSet& others) {
  std::vector<std::string> found;
  merge(paths, others, [&found](std::string_view path, bool isIn, bool isInOthers) {
    if (isIn && !isInOthers) found.emplace_back(path);
  });
  return found;
}

}  // namespace quarn
