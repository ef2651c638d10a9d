// Charts of data in memory, as the bytes of a picture.
//
// Threads: every function may be called on any thread, on several at once. A thread keeps its fonts and measured texts
// from the first chart to its own end, so that further charts are drawn sooner; threads share nothing that changes.
//
// Ownership: data are read during the call only; what is returned belongs to the caller.
//
// Errors: every function throws Error, and draws nothing then.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "zelkon/error.h"
#include "zelkon/picture.h"

namespace zelkon::plot {

// One slice of a pie. Texts are UTF-8.
struct Slice {
  std::string_view name;
  double amount = 0;  // finite, 0 or more
};

// The pie of the slices, counter-clockwise from three o'clock; no slices make a grey disc.
std::string pie(std::span<const Slice> slices, const Picture& picture = {});

// One period of amounts over time. Texts are UTF-8; an empty one stands for none, except for the name, which must be
// there.
struct Period {
  std::string_view name;        // "January 2026"
  double amount = 0;            // finite
  std::string_view text;        // the amount for people, shown under the pointer only: "$1,200.50"
  std::string_view medium{};    // names for narrower slots: "Jan 2026"
  std::string_view small{};     // "Jan"
  std::string_view subtitle{};  // what neighbours share, shown once below them: "2026"
};

struct AxisOptions {
  std::string currency;         // ISO 4217 code of the value axis: "EUR"; plain numbers without one
  bool showsNames = true;       // below the chart
  bool showsValues = true;      // left of it
  bool magnitudesOnly = false;  // losses are drawn upwards
};

// Bars where they fit the width, a line over an area where they do not; periods in the order given.
std::string overTime(std::span<const Period> periods, const AxisOptions& options = {}, const Picture& picture = {});

}  // namespace zelkon::plot
