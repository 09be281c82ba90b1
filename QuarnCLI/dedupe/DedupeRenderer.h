#pragma once

#include "QuarnCLI/report/InstallOutputFormat.h"
#include "QuarnCore/dedupe/AppDedupePlan.h"

/// Prints a plan, or a run with its plan. In tab-separated lines nothing is escaped: a tab or a line feed in
/// a value passes through.
namespace quarn::DedupeRenderer {

void print(const AppDedupePlan& plan, InstallOutputFormat format);
void print(const AppDedupeRunResult& result, InstallOutputFormat format);

}  // namespace quarn::DedupeRenderer
