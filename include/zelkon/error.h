// What every function of the library throws, and nothing else but std::bad_alloc.
#pragma once

#include <stdexcept>
#include <string>

namespace zelkon::plot {

class Error : public std::runtime_error {
 public:
  enum class Reason {
    badData,      // an entry that no chart takes; the text names it: "slices[3].amount is not a number"
    badPicture,   // a size, scale or locale that cannot be
    badScenario,  // a scenario that is not well formed; the text names the place: "pie.json: /steps/2/wait: ..."
    notDrawn,     // the chart does not take these data or options, such as a currency of a thousand letters
    tooLarge,     // beyond a limit, or for the memory there is
    noFile,       // a file that cannot be written
    noFonts       // a machine without fonts, or without what finds them
  };

  // `text`: one printable line.
  Error(Reason reason, const std::string& text) : std::runtime_error(text), reason_(reason) {}
  Reason reason() const { return reason_; }

 private:
  Reason reason_;
};

}  // namespace zelkon::plot
