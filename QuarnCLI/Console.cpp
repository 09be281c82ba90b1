#include "QuarnCLI/Console.h"

#include <cstdio>

#include "Platform/Text.h"

namespace quarn::Console {
namespace {

void write(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
}

/// Without the line feed; empty at the end of input.
std::string readLine() {
  std::string line;
  for (int byte = std::getchar(); byte != EOF && byte != '\n'; byte = std::getchar()) {
    line.push_back(static_cast<char>(byte));
  }
  return line;
}

}  // namespace

void print(std::string_view line) {
  write(stdout, std::string(line) + "\n");
}

void printText(std::string_view text) {
  write(stdout, text);
}

void printNow(std::string_view line) {
  print(line);
  std::fflush(stdout);
}

void writeError(std::string_view text) {
  // What was printed before stands before it, also where both streams go to one file.
  std::fflush(stdout);
  write(stderr, text);
  std::fflush(stderr);
}

bool allWasWritten() {
  return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

void tellOfWaiting() {
  static bool wasTold = false;
  if (!wasTold) writeError("Waiting for another run of quarn to finish.\n");
  wasTold = true;
}

std::string answer(std::string_view question) {
  write(stdout, question);
  std::fflush(stdout);
  return readLine();
}

bool confirms() {
  const std::string said = Text::lowercased(answer("Proceed? [y/N] "));
  if (said == "y" || said == "yes") return true;
  print("aborted.");
  return false;
}

}  // namespace quarn::Console
