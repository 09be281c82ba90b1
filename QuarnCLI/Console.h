#pragma once

#include <string>
#include <string_view>

/// The terminal, or what stands in for it. The only place that prints or asks.
namespace quarn::Console {

/// A line on standard output.
void print(std::string_view line);
/// Text on standard output as it is, such as a report of many lines.
void printText(std::string_view text);
/// A line on standard output that is seen at once, for progress.
void printNow(std::string_view line);
/// Text on standard error as it is, in one write.
void writeError(std::string_view text);
/// False if something that was printed on standard output didn't get out.
bool allWasWritten();
/// Says on standard error that another run has the turn; once a run.
void tellOfWaiting();
/// Asks a question and returns the line that is answered, without its line feed; empty at the end of input.
std::string answer(std::string_view question);
/// "Proceed? [y/N] "; true for "y" and "yes" in any letter case. Otherwise, and at the end of input,
/// prints "aborted.".
bool confirms();

}  // namespace quarn::Console
