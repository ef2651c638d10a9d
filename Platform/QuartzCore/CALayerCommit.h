// The layers that the open transaction has to look at, and what a commit does to them.
#pragma once

#include "QuartzCore/CALayer.h"

namespace zelkon {

class CALayerCommit {
 public:
  // The next commit looks at this layer: it waits for layout, display or the start of an animation, or it has come into
  // a live tree or left one. Opens an implicit transaction when none is open.
  static void touch(CALayer& layer);
  // The root of a tree gained or lost its observer.
  static void addRoot(CALayer& root);
  static void removeRoot(CALayer& root);
  // Layout, display, then the trees become visible: animations start, all at the same time, those of layers that have
  // left are ended, and the observers of changed trees hear of it. An exception out of a drawing callback goes on to
  // the caller after the work is done. What a callback changes belongs to the next commit.
  static void run();
};

}  // namespace zelkon
