// Layer trees without a chart: what a commit costs by the number of layers.
#include <benchmark/benchmark.h>

#include "Foundation/PlatformSession.h"
#include "QuartzCore/CALayer.h"
#include "QuartzCore/CATransaction.h"

namespace {

using namespace zelkon;

struct Screen : CALayerTreeObserver {
  void layerTreeDidChange() override {}
};

// Layers side by side that are all to be displayed: the time grows in proportion to their number.
void CommitLayers(benchmark::State& state) {
  PlatformSession session;
  const PlatformSession::Scope scope(session);
  Screen screen;
  for (auto _ : state) {
    const CALayerRef root = CALayer::layer();
    root->setTreeObserver(&screen);
    for (int64_t i = 0; i < state.range(0); ++i) {
      const CALayerRef layer = CALayer::layer();
      layer->setFrame(CGRectMake(0, 0, 10, 10));
      root->addSublayer(layer);
      layer->setNeedsDisplay();
    }
    CATransaction::flush();
    root->setTreeObserver(nullptr);
  }
  state.SetComplexityN(state.range(0));
}

BENCHMARK(CommitLayers)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond)->Complexity();

}  // namespace
