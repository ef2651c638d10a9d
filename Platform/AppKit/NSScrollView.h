// A scroll view and the clip view inside it.
#pragma once

#include "AppKit/NSView.h"

namespace zelkon {

// Shows a part of its document view; scrolling changes its bounds origin.
class NSClipView : public NSView {
 public:
  explicit NSClipView(CGRect frame);  // posts bounds notifications
  std::string className() const override { return "NSClipView"; }
  void scrollToPoint(CGPoint origin) { setBoundsOrigin(origin); }
};

class NSScrollView : public NSView {
 public:
  explicit NSScrollView(CGRect frame);
  std::string className() const override { return "NSScrollView"; }
  void setFrame(CGRect frame) override;  // the clip view fills the scroll view
  // Adds the clip view, over the whole of the scroll view; call once after construction.
  void setContentView(std::shared_ptr<NSClipView> clip);
  const std::shared_ptr<NSClipView>& contentView() const { return contentView_; }

 private:
  std::shared_ptr<NSClipView> contentView_;
};

}  // namespace zelkon
