#pragma once

#include <string>
#include <vector>

#include "bench/DocumentWriter.h"

namespace bench {

/// Documents made by code, always the same ones. `name` is one of
/// - options: so many files of about half a kilobyte, each an install option;
/// - mixed: one document of everything that there is, at least so many bytes;
/// - keys, tables, elements, dotted: one document with so many keys in one table, tables, tables of an array
///   of tables, or dotted keys. An entry is as long in a small document as it is in a large one;
/// - headers, arrays, inline: one document with so many headers, arrays or inline tables, each 200 deep.
/// Nothing for another name.
std::vector<Document> makeDocuments(const std::string& name, int count);

/// A paragraph of a document that has everything.
void writeMixedBlock(DocumentWriter& writer, int number);

}  // namespace bench
