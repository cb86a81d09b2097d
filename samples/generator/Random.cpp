#include "Random.h"

namespace SchoolGenerator {

TGUID TRandom::Guid() {
  TGUID Guid;
  for (std::size_t I = 0; I < Guid.Bytes.size(); I += sizeof(std::uint64_t)) {
    std::uint64_t Bits = FEngine();
    for (std::size_t J = 0; J < sizeof(Bits); ++J) {
      Guid.Bytes[I + J] = static_cast<std::uint8_t>(Bits & 0xFF);
      Bits >>= 8;
    }
  }
  Guid.Bytes[6] = static_cast<std::uint8_t>((Guid.Bytes[6] & 0x0F) | 0x40);
  Guid.Bytes[8] = static_cast<std::uint8_t>((Guid.Bytes[8] & 0x3F) | 0x80);
  return Guid;
}

}  // namespace SchoolGenerator
