#pragma once

namespace bench {

/// Prints the rows on the search for plug-ins.
void printPluginRows();

}  // namespace bench
