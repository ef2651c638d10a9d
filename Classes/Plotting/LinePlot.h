// Draws amounts over time as a line over a filled area, for series whose bars would not fit. It keeps the bar plotter's
// options, value axis and background; the body is two layers, the drawn line and a clip that wipes it in from the left.
#pragma once

#include "Classes/Plotting/BarPlot.h"

namespace zelkon {

class LinePlot : public BarPlot {
 public:
  std::string className() const override { return "LinePlot"; }

  // A generation asked for while one is running is dropped.
  void generatePlot() override;
  void createPlot() override;
  // Thins the data to one entry per whole point of the plot's width, spaces the points, and makes the labels.
  void createXLabels() override;
  void renderXGridlinesAndLabels() override;
  void renderPlotBody() override;
  void drawLayer(CALayer& layer, CGContext& context) override;
  void doDisplay() override;
  void redisplay() override;

  // Horizontal distance of neighbouring entries, points.
  double pixelsPerRenderPoint() const { return pixelsPerRenderPoint_; }
  std::vector<std::pair<std::string, Value>> properties() const override;

 private:
  void thinPlotData();

  bool generatingPlot_ = false;
  double pixelsPerRenderPoint_ = 0;
};

}  // namespace zelkon
