#pragma once

#include "Classes/Views/BarOrLineView.h"

namespace zelkon {

// The view that a page gets for spending over time.
class SpendingOverTimeBarView final : public BarOrLineView {
 public:
  using BarOrLineView::BarOrLineView;
  std::string className() const override { return "SpendingOverTimeBarView"; }
};

}  // namespace zelkon
