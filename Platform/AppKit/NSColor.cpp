#include "AppKit/NSColor.h"

#include <cmath>

#include "AppKit/NSGraphicsContext.h"
#include "Foundation/NSException.h"

namespace zelkon {

namespace {

// NaN counts as 0.
double clamped(double component) { return component > 0 ? std::fmin(component, 1) : 0; }

}  // namespace

NSColor::NSColor(CGColorSpaceRef space, std::vector<double> components)
    : space_(std::move(space)), components_(std::move(components)) {
  for (double& component : components_) component = clamped(component);
}

NSColor NSColor::colorWithCalibratedHue(double hue, double saturation, double brightness, double alpha) {
  hue = clamped(hue);
  saturation = clamped(saturation);
  const double v = clamped(brightness);
  const double position = hue >= 1 ? 0 : hue * 6;
  const int sextant = static_cast<int>(position);
  const double fraction = position - sextant;
  const double p = v * (1 - saturation);
  const double q = v * (1 - saturation * fraction);
  const double t = v * (1 - saturation * (1 - fraction));
  switch (sextant) {
    case 0:
      return colorWithCalibratedRed(v, t, p, alpha);
    case 1:
      return colorWithCalibratedRed(q, v, p, alpha);
    case 2:
      return colorWithCalibratedRed(p, v, t, alpha);
    case 3:
      return colorWithCalibratedRed(p, q, v, alpha);
    case 4:
      return colorWithCalibratedRed(t, p, v, alpha);
    default:
      return colorWithCalibratedRed(v, p, q, alpha);
  }
}

NSColor NSColor::colorWithCalibratedRed(double red, double green, double blue, double alpha) {
  return {CGColorSpaceCalibratedRGB(), {red, green, blue, alpha}};
}

NSColor NSColor::colorWithCalibratedWhite(double white, double alpha) {
  return {CGColorSpaceCalibratedWhite(), {white, alpha}};
}

NSColor NSColor::colorWithDeviceRed(double red, double green, double blue, double alpha) {
  return {CGColorSpaceDeviceRGB(), {red, green, blue, alpha}};
}

NSColor NSColor::colorWithDeviceWhite(double white, double alpha) { return {CGColorSpaceDeviceGray(), {white, alpha}}; }

NSColor NSColor::colorWithPatternImage() {
  NSColor color(nullptr, {});
  color.kind_ = Kind::pattern;
  return color;
}

NSColor NSColor::colorWithCatalogName(std::string name) {
  NSColor color(nullptr, {});
  color.kind_ = Kind::named;
  color.name_ = std::move(name);
  return color;
}

NSColor NSColor::darkGrayColor() { return colorWithCalibratedWhite(1.0 / 3, 1); }
NSColor NSColor::blackColor() { return colorWithCalibratedWhite(0, 1); }
NSColor NSColor::whiteColor() { return colorWithCalibratedWhite(1, 1); }

void NSColor::requireComponents(const char* selector) const {
  if (kind_ == Kind::components) return;
  const char* name = kind_ == Kind::pattern ? NSInternalInconsistencyException : NSInvalidArgumentException;
  const std::string what = kind_ == Kind::pattern ? "a pattern colour" : "the named colour " + name_;
  NSRaise(name, std::string("*** -[NSColor ") + selector + "] not defined for " + what + "; convert it first");
}

int NSColor::numberOfComponents() const {
  requireComponents("numberOfComponents");
  return static_cast<int>(components_.size());
}

const std::vector<double>& NSColor::components() const {
  requireComponents("getComponents:");
  return components_;
}

CGColorSpaceRef NSColor::colorSpace() const {
  requireComponents("colorSpace");
  return space_;
}

NSColor::RGBAComponents NSColor::getRedGreenBlueAlpha() const {
  requireComponents("getRed:green:blue:alpha:");
  if (space_->model != CGColorSpace::Model::rgb)
    NSRaise(NSInvalidArgumentException,
            "*** -[NSColor getRed:green:blue:alpha:] not valid for the colour space " + space_->name);
  return {components_[0], components_[1], components_[2], components_[3]};
}

RGBA NSColor::rgba() const {
  requireComponents("getComponents:");
  return CGColor(space_, components_).rgba();
}

void NSColor::set() const {
  const auto current = NSGraphicsContext::currentContext();
  if (kind_ != Kind::components || !current || current->graphicsPort() == nullptr) return;
  current->graphicsPort()->setFillColor(rgba());
  current->graphicsPort()->setStrokeColor(rgba());
}

}  // namespace zelkon
