#include "platform/Digest.h"

#include <nettle/sha1.h>

namespace Platform {

std::array<std::uint8_t, 20> Sha1(std::string_view AFirst, std::string_view ASecond) {
  sha1_ctx Context;
  sha1_init(&Context);
  for (const std::string_view Text : {AFirst, ASecond}) {
    sha1_update(&Context, Text.size(), reinterpret_cast<const std::uint8_t*>(Text.data()));
  }
  std::array<std::uint8_t, 20> Result;
  sha1_digest(&Context, Result.size(), Result.data());
  return Result;
}

}  // namespace Platform
