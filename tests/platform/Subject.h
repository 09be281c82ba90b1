#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>

/// The promises of the border are stated once and asked of everybody who makes them: the host's adapter, the
/// decorators that tests put around it (with no fault armed), and the doubles that stand in its place. Each
/// case has a subject of its own.
namespace quarn::contract {

template <class Part>
struct Subject {
  const char* name;
  std::shared_ptr<Part> (*make)();
};

template <class Part>
std::ostream& operator<<(std::ostream& out, const Subject<Part>& subject) {
  return out << subject.name;
}

/// The last word of a case's name.
template <class Subject>
std::string nameOf(const testing::TestParamInfo<Subject>& subject) {
  return subject.param.name;
}

/// Something that lives as long as the program.
template <class Part>
std::shared_ptr<Part> notOwned(Part& part) {
  return {&part, [](Part*) {}};
}

/// The number of a failure, 0 for success.
template <class Outcome>
int code(const Outcome& result) {
  return result ? 0 : result.error().code;
}
/// The sentence of a failure, empty for success.
template <class Outcome>
std::string text(const Outcome& result) {
  return result ? "" : result.error().description;
}

}  // namespace quarn::contract
