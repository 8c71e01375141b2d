#include "apps/kvo/Svg.h"

#include <algorithm>

#include "host/headless/HeadlessPlatform.h"

namespace kvo {
namespace {

constexpr int kGap = 120;
constexpr int kTwipsPerPoint = 20;
constexpr int kFontSize = 165;    // 8.25 point
constexpr int kBaseline = 165;    // of a label, below its top: Tahoma's ascent is one em
constexpr int kBorderWidth = 15;  // one pixel
// The highlight colour of the system where the picture is looked at, else a common one.
constexpr std::string_view kHighlight = "stroke:#0078d7;stroke:Highlight";

void AppendEscaped(std::string& out, std::string_view text) {
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        // Control characters can't stand in XML at all; a line break shows as a blank.
        out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
  }
}

void AppendAttribute(std::string& out, std::string_view name, int value) {
  out += ' ';
  out += name;
  out += "=\"" + std::to_string(value) + '"';
}

void AppendBox(std::string& out, const Box& box, int top) {
  out += "  <svg";
  AppendAttribute(out, "y", top);
  AppendAttribute(out, "width", box.width);
  AppendAttribute(out, "height", box.height);
  out += ">\n    <rect";
  AppendAttribute(out, "x", box.border.left);
  AppendAttribute(out, "y", box.border.top);
  AppendAttribute(out, "width", std::max(0, box.border.width));
  AppendAttribute(out, "height", std::max(0, box.border.height));
  AppendAttribute(out, "stroke-width", kBorderWidth);
  out += " fill=\"white\" style=\"" + std::string(kHighlight) + "\"/>\n";
  for (const Box::Label& label : box.labels) {
    if (label.caption.empty()) continue;
    out += "    <text";
    AppendAttribute(out, "x", label.at.left);
    AppendAttribute(out, "y", label.at.top + kBaseline);
    if (label.weight == FontWeight::bold) out += " font-weight=\"bold\"";
    // Another font that stands in for Tahoma must not leave the box.
    AppendAttribute(out, "textLength", TahomaTextWidth(label.caption, label.weight));
    out += " lengthAdjust=\"spacingAndGlyphs\"";
    out += " xml:space=\"preserve\">";
    AppendEscaped(out, label.caption);
    out += "</text>\n";
  }
  out += "  </svg>\n";
}

std::string Points(int twips) {
  return std::to_string(twips / kTwipsPerPoint) + '.' +
         std::to_string(twips % kTwipsPerPoint * 100 / kTwipsPerPoint + 100).substr(1) + "pt";
}

}  // namespace

std::string ToSvg(const std::vector<Box>& boxes) {
  int width = 0;
  int height = -kGap;
  for (const Box& box : boxes) {
    width = std::max(width, box.width);
    height += kGap + box.height;
  }
  height = std::max(height, 0);
  std::string out = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + Points(width) +
                    "\" height=\"" + Points(height) + "\" viewBox=\"0 0 " + std::to_string(width) +
                    ' ' + std::to_string(height) +
                    "\" font-family=\"Tahoma, Verdana, sans-serif\" font-size=\"" +
                    std::to_string(kFontSize) + "\">\n";
  int top = 0;
  for (const Box& box : boxes) {
    AppendBox(out, box, top);
    top += box.height + kGap;
  }
  return out + "</svg>\n";
}

}  // namespace kvo
