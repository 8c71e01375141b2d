#include "host/headless/BoxPicture.h"

#include <algorithm>

#include "common/forms/FormControl.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/headless/Xml.h"

namespace kvo {
namespace {

constexpr int kGap = 120;
constexpr auto kFontSize = static_cast<int>(Font().points * kTwipsPerPoint);
constexpr std::string_view kFontFamily = "Tahoma, Verdana, sans-serif";
constexpr int kLabelBaseline = kFontSize;  // below the label's top; Tahoma's ascent is one em
constexpr int kBorderWidth = 15;           // one pixel
// The viewer's system highlight colour, with a common one as fallback.
constexpr std::string_view kHighlight = "stroke:#0078d7;stroke:Highlight";

void AppendAttribute(std::string& out, std::string_view name, int value) {
  out += ' ';
  out += name;
  out += "=\"" + std::to_string(value) + '"';
}

// Appends the border and the labels, each after `indent`.
void AppendParts(std::string& out, const Box& box, std::string_view indent) {
  out += indent;
  out += "<rect";
  AppendAttribute(out, "x", box.border.left);
  AppendAttribute(out, "y", box.border.top);
  AppendAttribute(out, "width", std::max(0, box.border.width));
  AppendAttribute(out, "height", std::max(0, box.border.height));
  AppendAttribute(out, "stroke-width", kBorderWidth);
  out += " fill=\"white\" style=\"" + std::string(kHighlight) + "\"/>";
  for (const Box::Label& label : box.labels) {
    if (label.caption.empty()) continue;
    out += indent;
    out += "<text";
    AppendAttribute(out, "x", label.at.left);
    AppendAttribute(out, "y", label.at.top + kLabelBaseline);
    if (label.weight == FontWeight::bold) out += " font-weight=\"bold\"";
    // A substitute font must fit into the box.
    AppendAttribute(out, "textLength", TahomaTextWidth(label.caption, label.weight));
    out += " lengthAdjust=\"spacingAndGlyphs\"";
    out += " xml:space=\"preserve\">";
    AppendXml(out, label.caption);
    out += "</text>";
  }
}

std::string Points(int twips) {
  return std::to_string(twips / kTwipsPerPoint) + '.' +
         std::to_string(twips % kTwipsPerPoint * 100 / kTwipsPerPoint + 100).substr(1) + "pt";
}

}  // namespace

std::string BoxPicture(const std::vector<Box>& boxes) {
  int width = 0;
  int height = -kGap;
  for (const Box& box : boxes) {
    width = std::max(width, box.width);
    height += kGap + box.height;
  }
  height = std::max(height, 0);
  std::string out = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + Points(width) +
                    "\" height=\"" + Points(height) + "\" viewBox=\"0 0 " + std::to_string(width) +
                    ' ' + std::to_string(height) + "\" font-family=\"" + std::string(kFontFamily) +
                    "\" font-size=\"" + std::to_string(kFontSize) + "\">\n";
  int top = 0;
  for (const Box& box : boxes) {
    out += "  <svg";
    AppendAttribute(out, "y", top);
    AppendAttribute(out, "width", box.width);
    AppendAttribute(out, "height", box.height);
    out += '>';
    AppendParts(out, box, "\n    ");
    out += "\n  </svg>\n";
    top += box.height + kGap;
  }
  return out + "</svg>\n";
}

}  // namespace kvo
