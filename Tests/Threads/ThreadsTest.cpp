// Charts drawn on many threads at once are those drawn one after another on one thread: PDFs byte for byte, PNGs pixel
// for pixel. The compressor of PNGs packs the same bytes differently now and then.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "Hosts/Headless/ScenarioPlayer.h"
#include "Support/PicturePixels.h"

namespace zelkon {
namespace {

constexpr size_t threadCount = 8;
constexpr size_t chartsOfAThread = ZELKON_CHARTS_OF_A_THREAD;

// Small chances of no quality, the same on every machine.
class Chances {
 public:
  explicit Chances(size_t seed) : state_(static_cast<uint32_t>(seed) * 2654435761u + 1) {}
  size_t below(size_t count) {
    state_ = state_ * 1664525u + 1013904223u;
    return (state_ >> 8) % count;
  }

 private:
  uint32_t state_;
};

std::string amount(Chances& chances) {
  return std::to_string(chances.below(3000)) + "." + std::to_string(10 + chances.below(90));
}

// One chart for each number, pies and amounts over time by turns. No two have the same data.
Scenario scenarioOfNumber(size_t number) {
  constexpr const char* locales[] = {"en_US", "de_DE", "fr_FR", "ja_JP", "ar_EG", "he_IL@calendar=hebrew", "en_IN"};
  constexpr double scales[] = {1, 1.5, 2, 0.75};
  constexpr const char* words[] = {"Rent", "Essen", "Été", "家賃", "إيجار", "שכר", "Travel", "Gifts \xF0\x9F\x8E\x81"};
  Chances chances(number);
  Scenario scenario;
  scenario.locale = locales[number % std::size(locales)];
  scenario.scale = scales[number / 2 % std::size(scales)];
  scenario.size = {400.0 + static_cast<double>(chances.below(120)), 140.0 + static_cast<double>(chances.below(60))};
  const auto name = [&] { return words[chances.below(std::size(words))] + std::string(" ") + std::to_string(number); };
  ValueArray entries;
  if (number % 2 == 0) {
    scenario.plot = "pie";
    for (size_t i = 1 + chances.below(7); i > 0; --i)
      entries.emplace_back(ValueDictionary{{"key", name()}, {"value", std::stod(amount(chances))}});
  } else {
    scenario.plot = "spendingOverTimeBarOrLine";
    scenario.options = ValueArray{ValueDictionary{{"key", "CurrencyID"}, {"value", number % 4 == 1 ? "EUR" : "JPY"}}};
    for (size_t i = 1 + chances.below(20); i > 0; --i)
      entries.emplace_back(ValueDictionary{{"humanX", name()},
                                           {"shortHumanX", "M" + std::to_string(i)},
                                           {"humanY", amount(chances)},
                                           {"y", (chances.below(4) == 0 ? "-" : "") + amount(chances)}});
  }
  scenario.data = std::move(entries);
  return scenario;
}

struct Pictures {
  std::string png, pdf;
  friend bool operator==(const Pictures&, const Pictures&) = default;
};

// Those of the numbers from `first` on, drawn with services of their own.
std::vector<Pictures> drawFrom(size_t first, size_t count) {
  HeadlessServices services;
  std::vector<Pictures> drawn;
  for (size_t number = first; number < first + count; ++number) {
    const Scenario scenario = scenarioOfNumber(number);
    const auto draw = [&](const char* format) {
      return renderScenario(scenario, "chart", {}, format, services, [](const std::string&) {});
    };
    drawn.push_back({draw("png"), draw("pdf")});
  }
  return drawn;
}

TEST(Threads, EightDrawWhatOneDraws) {
  std::vector<std::vector<Pictures>> drawn(threadCount);
  {
    // All begin at once: the first use of a library is where threads meet.
    std::atomic<size_t> waiting{threadCount};
    std::vector<std::thread> threads;
    for (size_t i = 0; i < threadCount; ++i) {
      threads.emplace_back([&, i] {
        --waiting;
        while (waiting > 0) std::this_thread::yield();
        drawn[i] = drawFrom(i * chartsOfAThread, chartsOfAThread);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  const std::vector<Pictures> expected = drawFrom(0, threadCount * chartsOfAThread);
  std::string different;
  for (size_t number = 0; number < expected.size(); ++number) {
    const Pictures& one = drawn[number / chartsOfAThread][number % chartsOfAThread];
    ASSERT_EQ(one.png.substr(1, 3), "PNG") << number;
    ASSERT_EQ(one.pdf.substr(0, 4), "%PDF") << number;
    if (one == expected[number] || (one.pdf == expected[number].pdf && showTheSame(one.png, expected[number].png)))
      continue;
    different += (different.empty() ? "" : ", ") + std::to_string(number);
  }
  EXPECT_EQ(different, "") << "of " << expected.size();
  EXPECT_NE(expected[0], expected[2]);
}

TEST(Threads, OneScenarioMayBeDrawnByAllAtOnce) {
  for (const size_t number : {0, 1}) {
    const Scenario scenario = scenarioOfNumber(number);
    const auto draw = [&] {
      HeadlessServices services;
      return renderScenario(scenario, "chart", {}, "png", services, [](const std::string&) {});
    };
    const std::string expected = draw();
    std::vector<std::string> drawn(threadCount);
    std::vector<std::thread> threads;
    for (std::string& picture : drawn) threads.emplace_back([&] { picture = draw(); });
    for (std::thread& thread : threads) thread.join();
    for (const std::string& picture : drawn) EXPECT_TRUE(showTheSame(picture, expected)) << number;
  }
}

}  // namespace
}  // namespace zelkon
