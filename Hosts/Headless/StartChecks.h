// What the libraries below must be able to have: where they cannot, they end the process without a word of ours.
#pragma once

#include <stdexcept>

namespace zelkon {

// One printable line.
class ResourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Throws ResourceError where no thread can be started, where fontconfig has no configuration to read, where Pango is
// asked for a backend that it does not have, and where the limit on memory leaves too little to start with.
void checkResources();

// How many pixels a picture can have under the limit on memory (ulimit -v); without one, infinitely many.
double affordablePixels();

}  // namespace zelkon
