#include "TOMLDecoder/TOMLDecoder.h"

#include "TOMLDecoder/internal/Parser.h"

namespace toml {

std::shared_ptr<const DecodingState> TOMLDecoder::parsed(std::string document) const {
  return std::make_shared<const DecodingState>(DecodingState{
      Parser::parse(std::move(document), strategy.key.transform), strategy, isLenient, userInfo});
}

}  // namespace toml
