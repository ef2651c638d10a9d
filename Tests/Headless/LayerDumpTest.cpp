// What a layer dump says of a chart over time beside its tree.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Hosts/Headless/LayerDump.h"
#include "Hosts/Headless/PlugInHost.h"
#include "Hosts/Headless/ScenarioPlayer.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

using Json = nlohmann::json;

class LayerDump : public testing::Test {
 protected:
  static Value amounts(const std::vector<const char*>& texts) {
    ValueArray entries;
    for (const char* text : texts) entries.emplace_back(ValueDictionary{{"humanX", "A"}, {"humanY", "B"}, {"y", text}});
    return entries;
  }
  Json dumpOf(CGSize size, const std::vector<const char*>& texts) {
    PlugInHost host("spendingOverTimeBarOrLine", size, ChartLayout::literal, transcript_);
    host.call("SetPlotOptions", {Value(ValueArray{ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}}})});
    host.call("SetPlotData", {amounts(texts)});
    host.waitForAnimations(5);
    return Json::parse(layerDump(host.view().get(), CACurrentMediaTime()));
  }
  HeadlessServices services_;
  HeadlessSession session_{services_, "en_US", 1};
  Transcript transcript_{[](const std::string&) {}};
};

TEST_F(LayerDump, BarsComeWithTheirGeometryAndHitRectangles) {
  const Json plotter = dumpOf({657, 311}, {"100", "-50", "0"}).at("plotter");
  EXPECT_EQ(plotter.at("class"), "BarPlot");
  EXPECT_EQ(plotter.at("plotRect"), Json({33, 56, 600, 200}));
  EXPECT_EQ(plotter.at("barWidth"), 146);
  EXPECT_EQ(plotter.at("barMargin"), 40);
  EXPECT_EQ(plotter.at("yTickmarks"), Json({-50, 0, 50, 100}));
  EXPECT_EQ(plotter.at("hitRectangles"), Json({{73, 122, 146, 134}, {259, 56, 146, 66}, {0, 0, 0, 0}}));
  EXPECT_FALSE(plotter.contains("pixelsPerRenderPoint"));
}

TEST_F(LayerDump, ALineComesWithItsSpacing) {
  const Json plotter = dumpOf({157, 296}, {"100", "50", "50", "0"}).at("plotter");
  EXPECT_EQ(plotter.at("class"), "LinePlot");
  EXPECT_EQ(plotter.at("pixelsPerRenderPoint"), 25);
  EXPECT_EQ(plotter.at("hitRectangles").at(0), Json({20.5, 41, 25, 198}));
  EXPECT_EQ(plotter.at("hitRectangles").at(3), Json({95.5, 41, 25, 0}));
}

TEST_F(LayerDump, APieHasNoPlotter) {
  PlugInHost host("pie", {300, 200}, ChartLayout::literal, transcript_);
  EXPECT_FALSE(Json::parse(layerDump(host.view().get(), 0)).contains("plotter"));
}

}  // namespace
}  // namespace zelkon
