#pragma once

#include <string>
#include <vector>

#include "QuarnCore/uninstall/AppRecord.h"
#include "QuarnCore/uninstall/AppUninstallPlanner.h"
#include "QuarnCore/uninstall/AppUninstallSession.h"

/// The reports of the group "uninstall", each as one text that ends with a line feed.
namespace quarn {

/// Nothing is escaped, and what is absent is a "-".
namespace UninstallTSVFormatter {
std::string apps(const std::vector<AppRecord>& apps);
std::string inspection(const AppRecord& app);
std::string plan(const AppUninstallPlan& plan);
std::string sessions(const std::vector<AppUninstallSession>& sessions);
}  // namespace UninstallTSVFormatter

/// What is absent is an empty text. A list of nothing is a single line feed.
namespace UninstallTOMLFormatter {
std::string apps(const std::vector<AppRecord>& apps);
std::string inspection(const AppRecord& app);
std::string plan(const AppUninstallPlan& plan);
std::string session(const AppUninstallSession& session);
}  // namespace UninstallTOMLFormatter

/// For people. A list of nothing is an empty text.
namespace UninstallHumanFormatter {
std::string apps(const std::vector<AppRecord>& apps);
std::string inspection(const AppRecord& app);
std::string plan(const AppUninstallPlan& plan);
std::string session(const AppUninstallSession& session);
std::string sessions(const std::vector<AppUninstallSession>& sessions);
}  // namespace UninstallHumanFormatter

}  // namespace quarn
