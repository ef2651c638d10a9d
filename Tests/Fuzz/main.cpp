// The fuzzer of one target.
#include "Fuzz/FuzzTargets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  zelkon::ZELKON_FUZZ_TARGET(bytes, size);
  return 0;
}
