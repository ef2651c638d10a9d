// Platform colours: components in a colour space, or a pattern or named colour that has none until it is converted.
#pragma once

#include <memory>
#include <string>

#include "CoreGraphics/CGColor.h"

namespace zelkon {

class CGContext;

class NSColor {
 public:
  // Components outside 0...1 are clamped; hue 1 is hue 0.
  static NSColor colorWithCalibratedHue(double hue, double saturation, double brightness, double alpha);
  static NSColor colorWithCalibratedRed(double red, double green, double blue, double alpha);
  static NSColor colorWithCalibratedWhite(double white, double alpha);
  static NSColor colorWithDeviceRed(double red, double green, double blue, double alpha);
  static NSColor colorWithDeviceWhite(double white, double alpha);
  static NSColor colorWithPatternImage();                 // has no components
  static NSColor colorWithCatalogName(std::string name);  // has none before conversion
  static NSColor darkGrayColor();                         // calibrated white 1/3
  static NSColor blackColor();
  static NSColor whiteColor();

  // All raise NSInternalInconsistencyException for pattern and NSInvalidArgumentException for named colours.
  int numberOfComponents() const;                 // alpha included
  const std::vector<double>& components() const;  // alpha last
  CGColorSpaceRef colorSpace() const;
  struct RGBAComponents {
    double red, green, blue, alpha;
  };
  RGBAComponents getRedGreenBlueAlpha() const;  // raises NSInvalidArgumentException for a grey colour
  RGBA rgba() const;
  // Fill and stroke colour of the current graphics context; nothing without one.
  void set() const;

 private:
  enum class Kind { components, pattern, named };
  NSColor(CGColorSpaceRef space, std::vector<double> components);
  void requireComponents(const char* selector) const;
  Kind kind_ = Kind::components;
  CGColorSpaceRef space_;
  std::vector<double> components_;
  std::string name_;
};

}  // namespace zelkon
