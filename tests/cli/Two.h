#pragma once

#include <chrono>
#include <string>
#include <thread>

#include "tests/support/Scene.h"

namespace turns {

using std::chrono::milliseconds;

inline const std::string waiting = "Waiting for another run of quarn to finish.\n";

/// Two commands that begin some time apart, and what each said: standard output, then standard error.
struct Two {
  std::string first, second, firstError, secondError;

  Two(const std::string& one, const std::string& other, milliseconds gap) {
    scene::Background early({"/bin/sh", "-c", one + " >/tmp/1.out 2>/tmp/1.err"});
    std::this_thread::sleep_for(gap);
    scene::Background late({"/bin/sh", "-c", other + " >/tmp/2.out 2>/tmp/2.err"});
    early.wait();
    late.wait();
    first = scene::read("/tmp/1.out");
    second = scene::read("/tmp/2.out");
    firstError = scene::read("/tmp/1.err");
    secondError = scene::read("/tmp/2.err");
  }
  bool oneSays(const std::string& text) const {
    return (said(first, firstError, text) ? 1 : 0) + (said(second, secondError, text) ? 1 : 0) == 1;
  }
  std::string all() const { return first + firstError + "--\n" + second + secondError; }

 private:
  static bool said(const std::string& out, const std::string& error, const std::string& text) {
    return out.find(text) != std::string::npos || error.find(text) != std::string::npos;
  }
};

}  // namespace turns
