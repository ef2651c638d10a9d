// One slice of the pie as data, and the pie's whole data.
#pragma once

#include <memory>
#include <vector>

#include "Classes/Views/PlotData.h"
#include "Foundation/Value.h"

namespace zelkon {

class CALayer;
class PieSliceLayer;

struct PiePlotEntry {
  Value key;                                // the label
  Value value;                              // the amount
  double fraction = 0;                      // share of the whole circle
  std::weak_ptr<PieSliceLayer> layerValue;  // belongs to the layer tree; valid until the next layout
  std::weak_ptr<CALayer> textLayerValue;    // likewise, the label
  bool hover = false;                       // this slice shows the hover state
};
using PiePlotEntryRef = std::shared_ptr<PiePlotEntry>;

// The entries are shared with the view that lays them out and highlights them; an entry is known by its identity.
class PiePlotData : public PlotData {
 public:
  explicit PiePlotData(std::vector<PiePlotEntryRef> entries) : entries_(std::move(entries)) {}
  size_t count() const override { return entries_.size(); }
  const std::vector<PiePlotEntryRef>& entries() const { return entries_; }

 private:
  std::vector<PiePlotEntryRef> entries_;
};

}  // namespace zelkon
