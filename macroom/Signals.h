#pragma once

namespace quarn::room::Signals {

struct Arrival {
  int number = 0;
  bool sentByProcess = false;  // not by the terminal, which sends them to the command itself
};

/// From now on the signals that matter wait for `next` instead of acting by themselves.
void hold();

/// Waits for one of them.
Arrival next();

/// For a child that becomes another program: no signal is blocked or ignored.
void backToDefault();

}  // namespace quarn::room::Signals
