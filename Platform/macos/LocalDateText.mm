#include "Platform/DateText.h"
#include "Platform/macos/FoundationText.h"

namespace quarn::DateText {

std::string compactLocal(Moment moment) {
  NSDateFormatter* formatter = [[NSDateFormatter alloc] init];
  formatter.dateFormat = @"yyyyMMdd_HHmmss";
  return bytesOf(
      [formatter stringFromDate:[NSDate dateWithTimeIntervalSinceReferenceDate:secondsSince2001(moment)]]);
}

}  // namespace quarn::DateText
