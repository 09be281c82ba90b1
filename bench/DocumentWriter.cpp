#include "bench/DocumentWriter.h"

namespace bench {

void DocumentWriter::line(std::string_view text) {
  document_.text += text;
  document_.text += '\n';
}

void DocumentWriter::value(std::string_view key, Holds holds, std::string_view token) {
  value(key, key, holds, token);
}

void DocumentWriter::value(std::string_view written, std::string_view key, Holds holds,
                           std::string_view token) {
  document_.text += written;
  document_.text += " = ";
  line(token);
  plan(holds, key);
}

void DocumentWriter::close(std::size_t levels) {
  for (; levels > 0; --levels) document_.plan.close();
}

}  // namespace bench
