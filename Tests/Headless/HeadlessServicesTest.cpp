// Several services in one program.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Hosts/Headless/ScenarioPlayer.h"
#include "Support/PicturePixels.h"

namespace zelkon {
namespace {

// A chart of either kind with its own locale and scale.
struct Chart {
  const char* json;
  const char* format;

  std::string draw(
      HeadlessServices& services, const Transcript::Sink& sink = [](const std::string&) {}) const {
    return renderScenario(Scenario::parse(json, "chart"), "chart", {}, format, services, sink);
  }
  std::string drawnAlone() const {
    HeadlessServices services;
    return draw(services);
  }
};

constexpr Chart pie{R"({"plot": "pie", "size": [300, 200], "scale": 1.5, "locale": "de_DE",
    "data": [{"key": "Miete", "value": 1200.5}, {"key": "Essen", "value": 412.25}, {"key": "Reisen", "value": 90}]})",
                    "png"};
constexpr Chart bars{R"({"plot": "spendingOverTimeBarOrLine", "size": [500, 240], "scale": 2, "locale": "fr_FR",
    "options": [{"key": "CurrencyID", "value": "EUR"}],
    "data": [{"humanX": "Janvier", "humanY": "1 200,50 €", "y": "1200.50"},
             {"humanX": "Février", "humanY": "-300 €", "y": "-300"}]})",
                     "png"};

TEST(HeadlessServices, TwoAliveDrawEachItsOwnCharts) {
  const std::string expectedPie = pie.drawnAlone(), expectedBars = bars.drawnAlone();
  ASSERT_NE(expectedPie, expectedBars);
  HeadlessServices first, second;
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(showTheSame(pie.draw(first), expectedPie)) << i;
    EXPECT_TRUE(showTheSame(bars.draw(second), expectedBars)) << i;
  }
  EXPECT_TRUE(showTheSame(bars.draw(first), expectedBars));
  EXPECT_TRUE(showTheSame(pie.draw(second), expectedPie));
}

TEST(HeadlessServices, OneDrawsOnWhenAnotherHasGone) {
  const std::string expected = pie.drawnAlone();
  HeadlessServices first;
  auto second = std::make_unique<HeadlessServices>();
  EXPECT_TRUE(showTheSame(bars.draw(*second), bars.drawnAlone()));
  second.reset();
  EXPECT_TRUE(showTheSame(pie.draw(first), expected));
}

TEST(HeadlessServices, OneDrawsWhileAnotherIsInTheMiddleOfAChart) {
  const std::string expectedPie = pie.drawnAlone(), expectedBars = bars.drawnAlone();
  HeadlessServices first, second;
  int calls = 0;
  // The page is called when the opening has ended, before the picture is drawn.
  const std::string drawn = pie.draw(first, [&](const std::string&) {
    ++calls;
    EXPECT_TRUE(showTheSame(bars.draw(second), expectedBars));
    EXPECT_TRUE(showTheSame(bars.draw(first), expectedBars)) << "the same services too";
  });
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(showTheSame(drawn, expectedPie));
}

TEST(HeadlessServices, WhatOneChartLogsStaysOutOfTheOther) {
  HeadlessServices first, second;
  std::string log;
  const Scenario refused =
      Scenario::parse(R"({"plot": "pie", "size": [300, 200], "data": [{"key": "Rent", "value": "n/a"}]})", "chart");
  const auto note = [&](const std::string& line) {
    if (line.find(" log ") != std::string::npos) log += line + "\n";
  };
  bool isQuiet = true;
  pie.draw(first, [&](const std::string& line) {
    if (line.find(" log ") != std::string::npos) isQuiet = false;
    playScenario(refused, "chart", {}, "", second, note);
  });
  EXPECT_NE(log, "");
  EXPECT_TRUE(isQuiet);
}

}  // namespace
}  // namespace zelkon
