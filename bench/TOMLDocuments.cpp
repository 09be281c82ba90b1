#include "bench/TOMLDocuments.h"

#include <array>
#include <functional>
#include <map>

namespace bench {
namespace {

constexpr int depth = 200;

/// Six digits for every number below a million.
std::string digits(int number) {
  return std::to_string(1'000'000 + number).substr(1);
}

std::string numberToken(int number) {
  return std::to_string(100'000 + number % 900'000);
}

void writeList(DocumentWriter& writer, std::string_view key, int count) {
  constexpr std::array kinds = {"app", "dmg", "zip", "pkg", "mpkg", "script"};
  std::string list = std::string(key) + " = [";
  writer.open(Holds::array, key);
  for (std::size_t place = 0; place < static_cast<std::size_t>(count); ++place) {
    list += std::string(place == 0 ? "\"" : ", \"") + kinds[place] + '"';
    writer.plan(Holds::text, place);
  }
  writer.close();
  writer.line(list + "]");
}

Document optionFile(int number) {
  const auto flag = [number](int bit) { return (number >> bit) % 2 == 1 ? "true" : "false"; };
  const std::string name = "tracked-option-" + std::to_string(number);
  const std::string drive = "External" + std::string(static_cast<std::size_t>(number % 9), 'x');
  DocumentWriter writer;
  writer.line("# Option " + std::to_string(number) + ": what you would run by hand as well may run here.");
  writer.value("id", Holds::text, '"' + name + '"');
  writer.value("label", Holds::text,
               "\"External drive " + drive + ", number " + std::to_string(number) + '"');
  writer.value("strategy", Holds::text, number % 3 == 0 ? "\"external\"" : "\"external-tracked\"");
  writeList(writer, "sourceKinds", 1 + number % 6);
  writer.value("allowUntrustedPackages", Holds::boolean, flag(0));
  writer.value("allowUntrustedScripts", Holds::boolean, flag(1));
  writer.value("externalRootName", Holds::text, '"' + drive + '"');
  writer.value("applicationLinkRoot", Holds::text, number % 4 == 0 ? "'/Applications'" : "\"/Applications\"");
  writer.value("track", Holds::boolean, flag(2));
  writer.value("relocateSafeApps", Holds::boolean, flag(3));
  return writer.finish();
}

Document mixed(int bytes) {
  DocumentWriter writer;
  for (int number = 0; writer.size() < static_cast<std::size_t>(bytes); ++number) {
    writeMixedBlock(writer, number);
  }
  return writer.finish();
}

Document manyKeys(int count) {
  DocumentWriter writer;
  for (int number = 0; number < count; ++number) {
    writer.value("key-" + digits(number), Holds::integer, numberToken(number));
  }
  return writer.finish();
}

Document manyTables(int count) {
  DocumentWriter writer;
  for (int number = 0; number < count; ++number) {
    const std::string name = "table-" + digits(number);
    writer.line('[' + name + ']');
    writer.open(Holds::table, name);
    writer.value("value", Holds::integer, numberToken(number));
    writer.close();
  }
  return writer.finish();
}

Document manyElements(int count) {
  DocumentWriter writer;
  writer.open(Holds::array, "element");
  for (int number = 0; number < count; ++number) {
    writer.line("[[element]]");
    writer.open(Holds::table, static_cast<std::size_t>(number));
    writer.value("value", Holds::integer, numberToken(number));
    writer.close();
  }
  writer.close();
  return writer.finish();
}

Document manyDottedKeys(int count) {
  DocumentWriter writer;
  writer.open(Holds::table, "server");
  for (int number = 0; number < count; ++number) {
    const std::string name = "node-" + digits(number);
    writer.open(Holds::table, name);
    writer.value("server." + name + ".port", "port", Holds::integer, numberToken(number));
    writer.close();
  }
  writer.close();
  return writer.finish();
}

Document deepHeaders(int count) {
  DocumentWriter writer;
  for (int number = 0; number < count; ++number) {
    const std::string first = "deep-" + digits(number);
    std::string header = '[' + first;
    writer.open(Holds::table, first);
    for (int level = 1; level < depth; ++level) {
      header += ".level";
      writer.open(Holds::table, "level");
    }
    writer.line(header + ']');
    writer.value("value", Holds::integer, numberToken(number));
    writer.close(depth);
  }
  return writer.finish();
}

Document deepArrays(int count) {
  DocumentWriter writer;
  for (int number = 0; number < count; ++number) {
    const std::string key = "deep-" + digits(number);
    writer.open(Holds::array, key);
    for (int level = 1; level < depth; ++level) writer.open(Holds::array, std::size_t{0});
    writer.plan(Holds::integer, std::size_t{0});
    writer.close(depth);
    writer.line(key + " = " + std::string(depth, '[') + numberToken(number) + std::string(depth, ']'));
  }
  return writer.finish();
}

Document deepInlineTables(int count) {
  DocumentWriter writer;
  for (int number = 0; number < count; ++number) {
    const std::string key = "deep-" + digits(number);
    std::string line = key + " = ";
    writer.open(Holds::table, key);
    for (int level = 1; level < depth; ++level) {
      line += "{level = ";
      writer.open(Holds::table, "level");
    }
    writer.line(line + "{value = " + numberToken(number) + std::string(depth, '}'));
    writer.plan(Holds::integer, "value");
    writer.close(depth);
  }
  return writer.finish();
}

std::vector<Document> optionFiles(int count) {
  std::vector<Document> files;
  for (int number = 0; number < count; ++number) files.push_back(optionFile(number));
  return files;
}

}  // namespace

std::vector<Document> makeDocuments(const std::string& name, int count) {
  static const std::map<std::string, std::function<Document(int)>> makers = {
      {"mixed", mixed},           {"keys", manyKeys},           {"tables", manyTables},
      {"elements", manyElements}, {"dotted", manyDottedKeys},   {"headers", deepHeaders},
      {"arrays", deepArrays},     {"inline", deepInlineTables},
  };
  if (name == "options") return optionFiles(count);
  const auto maker = makers.find(name);
  if (maker == makers.end()) return {};
  std::vector<Document> documents;
  documents.push_back(maker->second(count));
  return documents;
}

}  // namespace bench
