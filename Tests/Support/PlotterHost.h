// A plotter with a root layer of a chosen size, as a view would drive it. Characters are 0.6 of the font size wide, so
// labels of 12 points are 7.2 a character and 15 high, and value labels of 9 points 5.4 and 11.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Classes/Plotting/BarPlot.h"
#include "QuartzCore/CATransaction.h"
#include "Support/Drawn.h"
#include "Support/PlainDevice.h"

namespace zelkon {

inline PlotEntry::Text textOf(const char* text) {
  return text == nullptr ? nullptr : std::make_shared<const std::string>(text);
}
inline PlotEntryRef plotEntry(double y, const char* humanX, const char* mediumHumanX = nullptr,
                              const char* shortHumanX = nullptr, const char* subtitle = nullptr) {
  auto entry = std::make_shared<PlotEntry>();
  entry->humanX = textOf(humanX);
  entry->mediumHumanX = textOf(mediumHumanX);
  entry->shortHumanX = textOf(shortHumanX);
  if (subtitle != nullptr) entry->shortHumanXSubtitle = subtitle;
  entry->humanY = textOf("amount");
  entry->y = y;
  return entry;
}
inline PlotEntryListRef plotEntries(std::vector<PlotEntryRef> entries) {
  return std::make_shared<const PlotEntryArray>(std::move(entries));
}
// Named A, B, C ... by turns.
inline PlotEntryListRef plotAmounts(const std::vector<double>& amounts) {
  std::vector<PlotEntryRef> entries;
  for (const double amount : amounts)
    entries.push_back(plotEntry(amount, std::string(1, static_cast<char>('A' + entries.size() % 26)).c_str()));
  return plotEntries(std::move(entries));
}

class TellingDelegate : public AnimationsCreatedProtocol {
 public:
  struct Told {
    std::string key;
    CABasicAnimation animation;
  };
  std::vector<Told> told;
  void animationCreated(CABasicAnimation& animation, const std::string& key) override {
    animation.setValue(key, "key");
    told.push_back({key, animation});
  }
};

template <typename Plot>
struct PlotterHost {
  PlainDevice device;
  CALayerRef root = CALayer::layer();
  std::shared_ptr<TellingDelegate> delegate = std::make_shared<TellingDelegate>();
  std::shared_ptr<const ValueDictionary> options;
  std::shared_ptr<Plot> plot = std::make_shared<Plot>();

  PlotterHost(double width, double height, ValueDictionary chosen = {})
      : options(std::make_shared<const ValueDictionary>(std::move(chosen))) {
    root->setBounds(CGRectMake(0, 0, width, height));
    plot->setAnimationsCreatedDelegate(delegate);
    plot->setRootLayer(root);
    plot->setPlotOptions(options);
  }
  ~PlotterHost() { CATransaction::flush(); }
  PlotterHost(const PlotterHost&) = delete;
  PlotterHost& operator=(const PlotterHost&) = delete;

  // Not owned by the plotter: kept here.
  void setOptions(ValueDictionary chosen) {
    options = std::make_shared<const ValueDictionary>(std::move(chosen));
    plot->setPlotOptions(options);
  }
  Drawn drawn() const { return Drawn(*root->contents()->recording()); }
};

}  // namespace zelkon
