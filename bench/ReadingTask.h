#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <malloc.h>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Checksum.h"
#include "bench/TOMLDocuments.h"

// A program that parses documents and reads their values through one library, round after round. A library
// says how in a struct:
//
//     Parsed                       a parsed document
//     parse(std::string text)      takes the text over
//     root(const Parsed&)          a table; tables have `table`, `array` and `value<T>` by key, arrays by
//     place Text, OffsetDateTime, …      what `value` is asked for; `addTo(Checksum&, value)` takes dates and
//     times
namespace bench {

template <class Library, class Container, class Place>
void readValue(const Container& from, Place where, Holds holds, Checksum& sum) {
  switch (holds) {
    case Holds::text:
      return sum.addText(from.template value<typename Library::Text>(where));
    case Holds::integer:
      return sum.add(static_cast<std::uint64_t>(from.template value<std::int64_t>(where)));
    case Holds::number:
      return sum.addNumber(from.template value<double>(where));
    case Holds::boolean:
      return sum.add(from.template value<bool>(where));
    case Holds::offsetDateTime:
      return Library::addTo(sum, from.template value<typename Library::OffsetDateTime>(where));
    case Holds::localDateTime:
      return Library::addTo(sum, from.template value<typename Library::LocalDateTime>(where));
    case Holds::date:
      return Library::addTo(sum, from.template value<typename Library::LocalDate>(where));
    default:
      return Library::addTo(sum, from.template value<typename Library::LocalTime>(where));
  }
}

template <class Library, class Container>
void readSteps(const Container& from, const ReadingPlan& plan, std::uint32_t first, std::uint32_t end,
               Checksum& sum);

template <class Library, class Container, class Place>
void readStep(const Container& from, Place where, const ReadingPlan& plan, std::uint32_t at, Checksum& sum) {
  const ReadingPlan::Step& step = plan.steps()[at];
  if (step.holds == Holds::table) {
    readSteps<Library>(from.table(where), plan, at + 1, step.end, sum);
  } else if (step.holds == Holds::array) {
    readSteps<Library>(from.array(where), plan, at + 1, step.end, sum);
  } else {
    readValue<Library>(from, where, step.holds, sum);
  }
}

template <class Library, class Container>
void readSteps(const Container& from, const ReadingPlan& plan, std::uint32_t first, std::uint32_t end,
               Checksum& sum) {
  for (std::uint32_t at = first; at != end; at = plan.steps()[at].end) {
    const ReadingPlan::Step& step = plan.steps()[at];
    if constexpr (requires { from.table(std::string_view()); }) {
      readStep<Library>(from, plan.keyOf(step), plan, at, sum);
    } else {
      readStep<Library>(from, std::size_t{step.key}, plan, at, sum);
    }
  }
}

/// Freed memory stays in the process, so that every round but the first finds the pages that it needs.
/// Otherwise a round pays the system for pages or doesn't by which blocks a library happens to ask for.
inline void keepFreedMemory() {
  ::mallopt(M_MMAP_THRESHOLD, 32 << 20);
  ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

/// What the allocator has given away: the sizes of all blocks, those that it maps one by one as well.
inline double bytesAllocated() {
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

/// Of this process: what else goes on in the machine doesn't count.
inline double processorSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// How much a parsed document holds, with all that it needs.
template <class Library>
double bytesHeld(const Document& document) {
  const double before = bytesAllocated();
  const typename Library::Parsed parsed = Library::parse(document.text);
  return bytesAllocated() - before;
}

struct Round {
  double seconds = 0;
  std::uint64_t checksum = 0;
};

/// From the texts in memory to all documents parsed, read and freed. Copying the texts isn't timed.
template <class Library>
Round oneRound(const std::vector<Document>& documents, const std::vector<ReadingPlan>& plans) {
  std::vector<std::string> texts;
  for (const Document& document : documents) texts.push_back(document.text);
  Checksum sum;
  const double begin = processorSeconds();
  for (std::size_t at = 0; at < texts.size(); ++at) {
    const typename Library::Parsed parsed = Library::parse(std::move(texts[at]));
    const auto steps = static_cast<std::uint32_t>(plans[at].steps().size());
    readSteps<Library>(Library::root(parsed), plans[at], 0, steps, sum);
  }
  return {processorSeconds() - begin, sum.sum()};
}

/// The best of several rounds, which is the least disturbed one. Ends the program if two rounds read
/// different values.
template <class Library>
Round bestRound(const std::vector<Document>& documents, const std::vector<ReadingPlan>& plans) {
  Round best = oneRound<Library>(documents, plans);
  double total = 0;
  for (int rounds = 1; total < 0.2 || rounds < 3; ++rounds) {
    const Round round = oneRound<Library>(documents, plans);
    if (round.checksum != best.checksum) std::exit(1);
    total += round.seconds;
    best.seconds = std::min(best.seconds, round.seconds);
  }
  return best;
}

/// PROGRAM DOCUMENTS COUNT EACH: reads one value out of EACH, none at 0. Prints the seconds of a round and
/// the bytes held, both a byte of the text, and the checksum of what was read.
template <class Library>
int runReadingTask(int count, char** values) {
  if (count != 4) return 2;
  keepFreedMemory();
  const std::vector<Document> documents = makeDocuments(values[1], std::atoi(values[2]));
  const auto each = static_cast<std::size_t>(std::atoi(values[3]));
  double bytes = 0;
  double held = 0;
  std::size_t counted = 0;
  std::vector<ReadingPlan> plans;
  for (const Document& document : documents) {
    bytes += static_cast<double>(document.text.size());
    held += bytesHeld<Library>(document);
    plans.push_back(each == 0 ? ReadingPlan{} : document.plan.thinned(each, counted));
  }
  const Round best = bestRound<Library>(documents, plans);
  std::printf("%.6e %.6e %llu\n", best.seconds / bytes, held / bytes,
              static_cast<unsigned long long>(best.checksum));
  return 0;
}

}  // namespace bench
