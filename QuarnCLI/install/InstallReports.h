#pragma once

#include <string>
#include <vector>

#include "QuarnCore/installer/InstallerInspection.h"
#include "QuarnCore/installer/InstallerOption.h"
#include "QuarnCore/installer/InstallerPlanner.h"
#include "QuarnCore/installer/InstallerSession.h"

/// The reports of the group "install", each as one text that ends with a line feed. A list of nothing is a
/// single line feed as TSV, and an empty text otherwise.
namespace quarn {

namespace TOMLFormatter {
std::string options(const std::vector<InstallerOption>& options);
std::string inspection(const InstallerInspection& inspection);
std::string plan(const InstallerPlan& plan);
std::string session(const InstallerSession& session);
}  // namespace TOMLFormatter

namespace TSVFormatter {
std::string options(const std::vector<InstallerOption>& options);
std::string inspection(const InstallerInspection& inspection);
std::string plan(const InstallerPlan& plan);
std::string sessions(const std::vector<InstallerSession>& sessions);
}  // namespace TSVFormatter

namespace InstallHumanFormatter {
std::string options(const std::vector<InstallerOption>& options);
std::string inspection(const InstallerInspection& inspection);
std::string plan(const InstallerPlan& plan);
std::string sessions(const std::vector<InstallerSession>& sessions);
}  // namespace InstallHumanFormatter

}  // namespace quarn
