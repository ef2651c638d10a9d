// Calls everything that the installed headers offer and looks at what comes back.
#include <zelkon/charts.h>
#include <zelkon/scenario.h>

#include <functional>
#include <iostream>
#include <limits>
#include <thread>
#include <vector>

using namespace zelkon::plot;

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  std::cerr << "not so: " << what << '\n';
  ++failures;
}

void expectError(Error::Reason reason, const char* text, const std::function<void()>& body) {
  try {
    body();
    expect(false, text);
  } catch (const Error& error) {
    if (error.reason() != reason || std::string(error.what()).find(text) == std::string::npos) {
      std::cerr << "instead of " << text << ": " << error.what() << '\n';
      ++failures;
    }
  }
}

// A big-endian number of a PNG's header.
unsigned numberAt(const std::string& bytes, size_t offset) {
  unsigned number = 0;
  for (size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes.at(offset + i));
  return number;
}

}  // namespace

int main() {
  const std::vector<Slice> slices{{"Rent", 1200}, {"Groceries", 412.5}};
  const std::vector<Period> periods{{"January 2026", 100, ""}, {"February 2026", -50, "lost fifty"}};

  const std::string png = pie(slices, {.width = 300, .height = 200, .scale = 2});
  expect(png.substr(1, 3) == "PNG" && numberAt(png, 16) == 600 && numberAt(png, 20) == 400, "600 by 400 pixels");
  expect(pie(slices, {.background = Color{1, 1, 1}}) != pie(slices), "the background shows");
  expect(pie({}).size() > 100, "a pie of nothing");
  expect(overTime(periods, {}, {.format = Format::pdf}).substr(0, 5) == "%PDF-", "a PDF");
  const std::string svg = overTime(periods, {.currency = "EUR"}, {.format = Format::svg, .locale = "de_DE"});
  expect(svg.find("<svg") != std::string::npos, "an SVG");
  expect(overTime(periods, {.showsNames = false}, {.format = Format::svg}) !=
             overTime(periods, {}, {.format = Format::svg}),
         "names can be left out");

  expectError(Error::Reason::badData, "slices[1].amount", [] {
    pie(std::vector<Slice>{{"a", 1}, {"b", std::numeric_limits<double>::quiet_NaN()}});
  });
  expectError(Error::Reason::badData, "periods[0].name", [] { overTime(std::vector<Period>{{"", 1, ""}}); });
  expectError(Error::Reason::badPicture, "picture.width", [&] { pie(slices, {.width = 0}); });
  expectError(Error::Reason::badPicture, "picture.locale", [&] { pie(slices, {.locale = "nowhere at all"}); });
  expectError(Error::Reason::tooLarge, "pixels", [&] { pie(slices, {.width = 20000, .height = 20000}); });
  expectError(Error::Reason::noFile, "none", [&] { save("none/such/pie.png", png); });
  expectError(Error::Reason::badScenario, "scenario: line 1", [] { render("{"); });
  expectError(Error::Reason::badScenario, "/steps/0", [] {
    play(R"({"plot": "pie", "steps": [{"snapshot": "../out.png"}]})", ".", [](const std::string&) {});
  });

  const char* scenario = R"({"plot": "pie", "size": [300, 200], "data": [{"key": "Rent", "value": 1200}]})";
  expect(render(scenario, Format::pdf) ==
             pie(std::vector<Slice>{{"Rent", 1200}}, {.format = Format::pdf, .width = 300, .height = 200}),
         "a scenario draws what memory draws");
  std::vector<std::string> lines;
  play(scenario, ".", [&](const std::string& line) { lines.push_back(line); });
  expect(lines == std::vector<std::string>{"0.250 page SpendingTrendsHaveDisplayed()"}, "the transcript");

  std::vector<std::thread> threads;
  std::vector<std::string> pictures(4);
  for (std::string& picture : pictures) threads.emplace_back([&] { picture = pie(slices, {.format = Format::pdf}); });
  for (std::thread& thread : threads) thread.join();
  for (const std::string& picture : pictures)
    expect(picture == pie(slices, {.format = Format::pdf}), "threads draw the same");
  return failures == 0 ? 0 : 1;
}
