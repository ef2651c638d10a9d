// A layer: geometry, contents, appearance and sublayers. Setters of animatable properties of a layer that is in a live,
// committed tree animate implicitly unless actions are off. Layers know nothing of the compositor: they set dirty bits
// and tell the observer of their tree that something changed.
//
// Coordinates are points, y up; geometry as bounds, position, anchor point and transform, frame derived.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CoreGraphics/CGContext.h"
#include "Foundation/Value.h"
#include "QuartzCore/CALayerProperties.h"

namespace zelkon {

class CAAnimationSet;

enum CAAutoresizingMask : unsigned {
  kCALayerNotSizable = 0,
  kCALayerMinXMargin = 1,
  kCALayerWidthSizable = 2,
  kCALayerMaxXMargin = 4,
  kCALayerMinYMargin = 8,
  kCALayerHeightSizable = 16,
  kCALayerMaxYMargin = 32,
};

class CALayerDelegate {
 public:
  virtual ~CALayerDelegate() = default;
  // Draws the layer's contents in its own coordinates. Called at display time for layers marked as needing display.
  virtual void drawLayer(CALayer& layer, CGContext& context) = 0;
};

// Hears that a hosted tree has something new to show.
class CALayerTreeObserver {
 public:
  virtual ~CALayerTreeObserver() = default;
  virtual void layerTreeDidChange() = 0;
};

class CALayer : public Object, public std::enable_shared_from_this<CALayer> {
 public:
  static CALayerRef layer();
  CALayer();
  ~CALayer() override;
  std::string className() const override { return "CALayer"; }

  // Geometry.
  CGRect bounds() const { return model_.bounds; }
  void setBounds(CGRect bounds);
  CGPoint position() const { return model_.position; }
  void setPosition(CGPoint position);
  CGPoint anchorPoint() const { return model_.anchorPoint; }
  void setAnchorPoint(CGPoint anchorPoint);
  CGRect frame() const;
  void setFrame(CGRect frame);  // sets bounds size and position; keeps the bounds origin
  const CATransform3D& transform() const { return model_.transform; }
  void setTransform(const CATransform3D& transform);
  double zPosition() const { return model_.zPosition; }
  void setZPosition(double z);
  virtual unsigned autoresizingMask() const { return autoresizingMask_; }
  void setAutoresizingMask(unsigned mask) { autoresizingMask_ = mask; }

  // Appearance.
  double opacity() const { return model_.opacity; }
  void setOpacity(double opacity);
  bool isHidden() const { return model_.hidden; }
  void setHidden(bool hidden);
  bool masksToBounds() const { return model_.masksToBounds; }
  void setMasksToBounds(bool masks);
  double cornerRadius() const { return model_.cornerRadius; }
  void setCornerRadius(double radius);
  const CGColorRef& backgroundColor() const { return model_.backgroundColor; }
  void setBackgroundColor(CGColorRef color);
  void setBorderColor(CGColorRef color);
  void setBorderWidth(double width);
  const CGImageRef& contents() const { return model_.contents; }
  void setContents(CGImageRef contents);
  CAContentsGravity contentsGravity() const { return model_.contentsGravity; }
  void setContentsGravity(CAContentsGravity gravity);
  unsigned edgeAntialiasingMask() const { return model_.edgeAntialiasingMask; }
  void setEdgeAntialiasingMask(unsigned mask);
  void setShadowOpacity(double opacity);
  void setShadowOffset(CGSize offset);
  void setShadowRadius(double radius);
  void setShadowColor(CGColorRef color);
  const std::vector<CIFilterRef>& filters() const { return model_.filters; }
  void setFilters(std::vector<CIFilterRef> filters);
  const CIFilterRef& compositingFilter() const { return model_.compositingFilter; }
  void setCompositingFilter(CIFilterRef filter);
  const CALayerRef& mask() const { return model_.mask; }
  void setMask(CALayerRef mask);  // a mask is in no tree
  const std::string& name() const { return name_; }
  void setName(std::string name) { name_ = std::move(name); }
  void setDelegate(std::weak_ptr<CALayerDelegate> delegate) { delegate_ = std::move(delegate); }  // not owned
  std::shared_ptr<CALayerDelegate> delegate() const { return delegate_.lock(); }
  const CALayerProperties& model() const { return model_; }

  // Tree.
  CALayerRef superlayer() const;
  std::vector<CALayerRef> sublayers() const { return sublayers_; }  // a snapshot, in array order
  const std::vector<CALayerRef>& sublayersInPlace() const { return sublayers_; }
  void addSublayer(const CALayerRef& layer);  // moves it here, to the top; adding an ancestor or itself raises
  void insertSublayerBelow(const CALayerRef& layer, const CALayerRef& sibling);
  void insertSublayerAbove(const CALayerRef& layer, const CALayerRef& sibling);
  void removeFromSuperlayer();
  // The observer of the tree whose root this is; null detaches. Not owned.
  void setTreeObserver(CALayerTreeObserver* observer);
  bool isLive() const { return live_; }  // in a tree with an observer

  // Display and layout.
  void setNeedsDisplay();
  bool needsDisplay() const { return needsDisplay_; }
  virtual bool needsDisplayOnBoundsChange() const { return needsDisplayOnBoundsChange_; }
  void setNeedsDisplayOnBoundsChange(bool needs) { needsDisplayOnBoundsChange_ = needs; }
  void setNeedsLayout();
  void layoutIfNeeded();
  void displayIfNeeded();
  // Calls the delegate's drawLayer. Layers that draw themselves override it and drawsItself().
  virtual void drawInContext(CGContext& context);
  virtual bool drawsItself() const { return false; }

  // Animations. The layer keeps a copy; adding under a key removes the one there (its delegate hears "not finished").
  void addAnimation(CABasicAnimation animation, const std::string& key);
  const CABasicAnimation* animationForKey(const std::string& key) const;  // valid until the next change
  std::vector<std::string> animationKeys() const;                         // in order of adding
  void removeAnimationForKey(const std::string& key);
  void removeAllAnimations();
  // The default action for an animatable key of a layer in a live tree: from the value shown now, no target, default
  // curve. Nothing for other keys and for layers outside a live tree.
  std::optional<CABasicAnimation> actionForKey(const std::string& key) const;
  // Model values with the animations of the time in place.
  CALayerProperties presentation(double time) const;
  bool hasAnimations() const;  // of any kind, also those that have ended but stay
  bool hasRunningAnimations(double time) const;
  std::vector<std::string> runningKeyPaths(double time) const;  // what runs or waits to, in order of adding

  // Ad-hoc values; null removes, a key never set reads null.
  void setValue(Value value, const std::string& key);
  Value valueForKey(std::string_view key) const;

  // Draws the model tree in the layer's own coordinates, without animations; layers with a mask or a compositing filter
  // are left out, filters and shadows have no effect.
  void renderInContext(CGContext& context);

  // For the compositor: counts up with every change of this layer's own look, of its subtree, and of its contents.
  unsigned long appearanceVersion() const { return appearanceVersion_; }
  unsigned long subtreeVersion() const;

 protected:
  // Contents, model and tree changed: the observer hears of it once per commit at most.
  void didChange();

 private:
  friend class CALayerCommit;

  // Stores a value unless it is there already; animates under `key` (null: never) where that is due.
  template <typename T>
  void change(const char* key, T CALayerProperties::*member, T value);
  std::optional<CABasicAnimation> implicitAction(const char* key) const;
  bool storeBounds(CGRect bounds);  // without the sublayers; whether the size changed
  void resizeWithin(CGSize oldSize, CGSize newSize);
  void insert(const CALayerRef& layer, size_t index);
  size_t indexOf(const CALayer* sublayer) const;  // number of sublayers when it is none
  void detach();                                  // out of the superlayer's list
  void setSubtreeLive(bool live);
  void display();
  CAAnimationSet& animationSet();

  CALayerProperties model_;
  std::weak_ptr<CALayer> masked_;  // the layer that this is the mask of
  std::string name_;
  std::weak_ptr<CALayerDelegate> delegate_;
  std::weak_ptr<CALayer> superlayer_;
  std::vector<CALayerRef> sublayers_;
  CALayerTreeObserver* observer_ = nullptr;
  ValueDictionary values_;
  std::shared_ptr<CAAnimationSet> animations_;  // null until there is one
  unsigned autoresizingMask_ = 0;
  unsigned long appearanceVersion_ = 0, subtreeVersion_ = 0, shownVersion_ = 0;
  bool needsDisplay_ = false, needsLayout_ = false, needsDisplayOnBoundsChange_ = false;
  bool live_ = false;
  bool committed_ = false;  // was in a live tree at the last commit
  bool touched_ = false;    // the open transaction knows of it
};

}  // namespace zelkon
