#include "Hosts/Headless/LayerDump.h"

#include <nlohmann/json.hpp>

#include "CoreGraphics/DisplayList.h"
#include "QuartzCore/CATextLayer.h"

namespace zelkon {
namespace {

using Json = nlohmann::ordered_json;

Json json(CGPoint p) { return Json::array({p.x, p.y}); }
Json json(CGSize s) { return Json::array({s.width, s.height}); }
Json json(CGRect r) { return Json::array({r.origin.x, r.origin.y, r.size.width, r.size.height}); }
Json json(const RGBA& c) { return Json::array({c.red, c.green, c.blue, c.alpha}); }
Json json(const CGAffineTransform& t) { return Json::array({t.a, t.b, t.c, t.d, t.tx, t.ty}); }
Json json(const CATransform3D& t) {
  return Json::array(
      {t.m11, t.m12, t.m13, t.m14, t.m21, t.m22, t.m23, t.m24, t.m31, t.m32, t.m33, t.m34, t.m41, t.m42, t.m43, t.m44});
}

// Paths as text: "M x y", "L x y", "C x y x y x y", "Z", six significant digits.
Json json(const CGPath& path) {
  std::string text;
  const auto add = [&](char letter, const CGPoint* points, int count) {
    if (!text.empty()) text += ' ';
    text += letter;
    for (int i = 0; i < count; ++i) {
      char number[80];
      std::snprintf(number, sizeof number, " %.6g %.6g", points[i].x, points[i].y);
      text += number;
    }
  };
  for (const CGPathElement& element : path.elements()) {
    switch (element.type) {
      case CGPathElement::Type::move:
        add('M', element.points, 1);
        break;
      case CGPathElement::Type::line:
        add('L', element.points, 1);
        break;
      case CGPathElement::Type::curve:
        add('C', element.points, 3);
        break;
      case CGPathElement::Type::close:
        add('Z', element.points, 0);
        break;
    }
  }
  return text;
}

struct CommandJson {
  Json operator()(const DisplayList::Save&) const { return {{"op", "save"}}; }
  Json operator()(const DisplayList::Restore&) const { return {{"op", "restore"}}; }
  Json operator()(const DisplayList::Concat& c) const { return {{"op", "concat"}, {"transform", json(c.transform)}}; }
  Json operator()(const DisplayList::Clip& c) const {
    return {{"op", "clip"}, {"path", json(c.path)}, {"evenOdd", c.evenOdd}};
  }
  Json operator()(const DisplayList::Fill& c) const {
    return {{"op", "fill"}, {"path", json(c.path)}, {"color", json(c.color)}};
  }
  Json operator()(const DisplayList::Stroke& c) const {
    return {{"op", "stroke"}, {"path", json(c.path)}, {"width", c.style.width}, {"color", json(c.color)}};
  }
  Json operator()(const DisplayList::Gradient& c) const {
    Json stops = Json::array();
    for (const CGGradientStop& stop : c.gradient->stops()) stops.push_back({stop.location, json(stop.color)});
    return {{"op", "gradient"},
            {"start", json(c.placement.start)},
            {"end", json(c.placement.end)},
            {"radius", c.placement.radius},
            {"options", c.placement.options},
            {"stops", std::move(stops)}};
  }
  Json operator()(const DisplayList::Image& c) const {
    return {{"op", "image"}, {"rect", json(c.rect)}, {"size", json(c.image->size())}, {"alpha", c.alpha}};
  }
  Json operator()(const DisplayList::Text& c) const {
    return {{"op", "text"},       {"text", c.run.text},       {"font", c.run.face->postScriptName},
            {"size", c.run.size}, {"at", json(c.run.origin)}, {"color", json(c.color)}};
  }
  Json operator()(const DisplayList::Clear& c) const { return {{"op", "clear"}, {"rect", json(c.rect)}}; }
  Json operator()(const DisplayList::BeginGroup& c) const {
    Json group = {{"op", "group"}, {"alpha", c.effects.alpha}};
    if (c.effects.shadow)
      group["shadow"] = {{"offset", json(c.effects.shadow->offset)},
                         {"sigma", c.effects.shadow->sigma},
                         {"color", json(c.effects.shadow->color)}};
    return group;
  }
  Json operator()(const DisplayList::EndGroup&) const { return {{"op", "endGroup"}}; }
};

Json drawing(const CGImageRef& contents) {
  Json commands = Json::array();
  if (contents && contents->recording())
    for (const auto& command : contents->recording()->commands())
      commands.push_back(std::visit(CommandJson{}, command));
  return commands;
}

Json presentation(const CALayer& layer, double time) {
  Json values = Json::object();
  const CALayerProperties shown = layer.presentation(time);
  for (const std::string& key : layer.animationKeys()) {
    const CABasicAnimation* animation = layer.animationForKey(key);
    if (!animation) continue;
    const std::string& path = animation->keyPath;
    if (path == "bounds") values[path] = json(shown.bounds);
    if (path == "position") values[path] = json(shown.position);
    if (path == "opacity") values[path] = shown.opacity;
    if (path == "transform") values[path] = json(shown.transform);
    if (path == "hidden") values[path] = shown.hiddenFade;
  }
  return values;
}

Json layerJson(CALayer& layer, double time) {
  Json node = {{"name", layer.name()},
               {"class", layer.className()},
               {"bounds", json(layer.bounds())},
               {"position", json(layer.position())},
               {"anchorPoint", json(layer.anchorPoint())}};
  if (!CATransform3DIsIdentity(layer.transform())) node["transform"] = json(layer.transform());
  node["opacity"] = layer.opacity();
  node["hidden"] = layer.isHidden();
  node["masksToBounds"] = layer.masksToBounds();
  node["cornerRadius"] = layer.cornerRadius();
  node["contents"] = layer.contents() ? json(layer.contents()->size()) : Json(nullptr);
  if (const auto* text = dynamic_cast<const CATextLayer*>(&layer)) node["string"] = text->plainString();
  node["animations"] = layer.animationKeys();
  node["presentation"] = presentation(layer, time);
  node["drawing"] = drawing(layer.contents());
  Json sublayers = Json::array();
  for (const CALayerRef& sublayer : layer.sublayersInPlace()) sublayers.push_back(layerJson(*sublayer, time));
  node["sublayers"] = std::move(sublayers);
  return node;
}

Json json(const Value& value) {
  if (value.isString()) return value.string();
  if (value.isNumber()) return value.doubleValue();
  Json elements = Json::array();
  for (const Value& element : value.array()) elements.push_back(json(element));
  return elements;
}

}  // namespace

std::string layerDump(const CALayerPlotView* view, double time) {
  Json root = {{"layers", nullptr}};
  if (view && view->layer()) root["layers"] = layerJson(*view->layer(), time);
  if (view) {
    for (const auto& [name, value] : view->plotterProperties()) root["plotter"][name] = json(value);
  }
  return root.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace zelkon
