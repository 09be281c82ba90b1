#include "DriveRequest.h"

#include <regex>

namespace quarn::room {

std::optional<DriveRequest> DriveRequest::parse(const std::string& text) {
  static const std::regex form("([^/]+)=([1-9][0-9]*[kKmMgG]?)(,ro)?");
  std::smatch match;
  if (!std::regex_match(text, match, form)) return std::nullopt;
  if (match[1] == "." || match[1] == "..") return std::nullopt;
  return DriveRequest{match[1], match[2], match[3].matched};
}

}  // namespace quarn::room
