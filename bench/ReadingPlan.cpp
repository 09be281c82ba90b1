#include "bench/ReadingPlan.h"

namespace bench {

void ReadingPlan::add(Holds holds, Where where) {
  const auto end = static_cast<std::uint32_t>(steps_.size() + 1);
  if (const auto* key = std::get_if<std::string_view>(&where)) {
    steps_.push_back({holds, true, static_cast<std::uint32_t>(keys_.size()),
                      static_cast<std::uint32_t>(key->size()), end});
    keys_ += *key;
  } else {
    steps_.push_back({holds, false, static_cast<std::uint32_t>(std::get<std::size_t>(where)), 0, end});
  }
}

void ReadingPlan::open(Holds holds, Where where) {
  open_.push_back(static_cast<std::uint32_t>(steps_.size()));
  add(holds, where);
}

void ReadingPlan::close() {
  steps_[open_.back()].end = static_cast<std::uint32_t>(steps_.size());
  open_.pop_back();
}

ReadingPlan ReadingPlan::thinned(std::size_t each, std::size_t& counted) const {
  ReadingPlan thin;
  thinInto(thin, 0, static_cast<std::uint32_t>(steps_.size()), each, counted);
  return thin;
}

void ReadingPlan::thinInto(ReadingPlan& thin, std::uint32_t first, std::uint32_t end, std::size_t each,
                           std::size_t& counted) const {
  for (std::uint32_t at = first; at != end; at = steps_[at].end) {
    const Step& step = steps_[at];
    if (step.holds != Holds::table && step.holds != Holds::array) {
      if (counted++ % each == 0) thin.add(step.holds, whereOf(step));
      continue;
    }
    const std::size_t before = thin.steps_.size();
    const std::size_t keysBefore = thin.keys_.size();
    thin.open(step.holds, whereOf(step));
    thinInto(thin, at + 1, step.end, each, counted);
    thin.close();
    if (thin.steps_.size() == before + 1) {
      thin.steps_.pop_back();
      thin.keys_.resize(keysBefore);
    }
  }
}

Where ReadingPlan::whereOf(const Step& step) const {
  if (step.isKeyed) return keyOf(step);
  return std::size_t{step.key};
}

}  // namespace bench
