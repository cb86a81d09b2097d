#include <cstddef>
#include <cstdint>

#include "Fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* AData, std::size_t ASize) {
  Fuzz::Run({reinterpret_cast<const char*>(AData), ASize});
  return 0;
}
