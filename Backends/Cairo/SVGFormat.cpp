#include "Backends/Cairo/SVGFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace zelkon {

namespace {

std::string decimal(double value, int decimals) {
  if (!std::isfinite(value)) return "0";
  char digits[400];
  const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals).ptr;
  std::string text(digits, end);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

}  // namespace

std::string svgNumber(double value) { return decimal(value, 3); }

std::string svgAttribute(const char* name, double value) {
  return std::string(" ") + name + "=\"" + svgNumber(value) + "\"";
}

std::string svgPathData(const CGPath& path) {
  std::string data;
  auto add = [&data](char command, const CGPoint* points, int count) {
    data += command;
    for (int i = 0; i < count; ++i) {
      if (i > 0) data += ' ';
      data += svgNumber(points[i].x) + ' ' + svgNumber(points[i].y);
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
        data += 'Z';
        break;
    }
  }
  return data;
}

std::string svgTransform(const CGAffineTransform& t) {
  std::string text = "matrix(";
  for (const double factor : {t.a, t.b, t.c, t.d}) text += decimal(factor, 6) + ' ';
  return text + svgNumber(t.tx) + ' ' + svgNumber(t.ty) + ')';
}

std::string svgColor(const RGBA& color) {
  auto byte = [](double component) { return static_cast<int>(std::lround(255 * std::clamp(component, 0.0, 1.0))); };
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", byte(color.red) & 255, byte(color.green) & 255,
                byte(color.blue) & 255);
  return text;
}

std::string svgEscaped(std::string_view text) {
  std::string escaped;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    // U+FFFE and U+FFFF are no XML characters; neither are the controls.
    if (c == '\xef' && i + 2 < text.size() && text[i + 1] == '\xbf' && static_cast<uint8_t>(text[i + 2]) >= 0xbe) {
      i += 2;
    } else if (c == '&') {
      escaped += "&amp;";
    } else if (c == '<') {
      escaped += "&lt;";
    } else if (c == '>') {
      escaped += "&gt;";
    } else if (c == '"') {
      escaped += "&quot;";
    } else if (static_cast<uint8_t>(c) >= 0x20) {
      escaped += c;
    } else if (c == '\t') {
      escaped += ' ';
    }
  }
  return escaped;
}

std::string svgBase64(std::string_view bytes) {
  static constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k) group = group << 8 | (i + k < bytes.size() ? static_cast<uint8_t>(bytes[i + k]) : 0);
    for (size_t k = 0; k < 4; ++k) text += i + k > bytes.size() ? '=' : letters[group >> (18 - 6 * k) & 63];
  }
  return text;
}

}  // namespace zelkon
