// What is fed with anything at all: each target takes any bytes and returns. A crash, a hang, a leak, or an exception
// that escapes is a defect. The fuzzers call them with bytes they invent, the tests with those of the corpus.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelkon {

// The text of a scenario file, read and played with all its steps.
void fuzzScenario(const uint8_t* bytes, size_t size);
// A scenario made from the bytes, one choice after another: whatever the bytes, there are calls, events and pictures.
void fuzzSteps(const uint8_t* bytes, size_t size);
// A page's call as the block in which it crosses into the module. The first three bytes say which chart, which call,
// and what the page does whenever it is called back.
void fuzzPageArray(const uint8_t* bytes, size_t size);

}  // namespace zelkon
