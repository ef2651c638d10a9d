#include "AppKit/NSScrollView.h"

namespace zelkon {

NSClipView::NSClipView(CGRect frame) : NSView(frame) { setPostsBoundsChangedNotifications(true); }

NSScrollView::NSScrollView(CGRect frame) : NSView(frame) {}

void NSScrollView::setFrame(CGRect frame) {
  NSView::setFrame(frame);
  if (contentView_) contentView_->setFrame({{0, 0}, frame.size});
}

void NSScrollView::setContentView(std::shared_ptr<NSClipView> clip) {
  if (contentView_) contentView_->removeFromSuperview();
  contentView_ = std::move(clip);
  if (!contentView_) return;
  contentView_->setFrame({{0, 0}, frame().size});
  addSubview(contentView_);
}

}  // namespace zelkon
