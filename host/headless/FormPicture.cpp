#include "host/headless/FormPicture.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "common/forms/FormGrid.h"
#include "common/forms/FormPropertyGrid.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/headless/TextLines.h"
#include "host/headless/Xml.h"

namespace kvo {
namespace {

constexpr int kCaptionHeight = 360;  // of the strip above the form
constexpr int kLine = 195;           // a line of text
constexpr int kLineBaseline = 160;   // below its top
constexpr int kRow = 270;            // of a grid
constexpr int kMargin = 60;          // between a box and its text
constexpr int kArrow = 255;          // the button of a list
constexpr int kMark = 195;           // the box or circle of a choice

constexpr std::string_view kFace = "#f0f0f0";
constexpr std::string_view kEdge = "#7a7a7a";
constexpr std::string_view kText = "#000000";
constexpr std::string_view kGray = "#838383";
constexpr std::string_view kHead = "#dcdcdc";
constexpr std::string_view kWhite = "#ffffff";
constexpr std::string_view kAccent = "#0a5fb4";

class SvgWriter {
 public:
  using Attributes = std::initializer_list<std::pair<std::string_view, std::string>>;

  void Element(std::string_view name, Attributes attributes) {
    Begin(name, attributes);
    out_ += "/>\n";
  }
  void Open(std::string_view name, Attributes attributes) {
    Begin(name, attributes);
    out_ += ">\n";
  }
  void Close(std::string_view name) { out_ += "</" + std::string(name) + ">\n"; }
  void Content(std::string_view name, Attributes attributes, std::string_view text) {
    Begin(name, attributes);
    out_ += '>';
    AppendXml(out_, text);
    Close(name);
  }
  std::string Take() { return std::move(out_); }

 private:
  void Begin(std::string_view name, Attributes attributes) {
    out_ += '<' + std::string(name);
    for (const auto& [key, value] : attributes) {
      if (value.empty()) continue;
      out_ += ' ' + std::string(key) + "=\"";
      AppendXml(out_, value);
      out_ += '"';
    }
  }
  std::string out_;
};

std::string Number(int number) { return std::to_string(number); }

// The length of a text in Tahoma, so that a substitute font takes the same space; empty for other
// fonts.
std::string LengthOf(std::string_view text, const Font& font) {
  constexpr Font kMeasured;
  if (font.family != kMeasured.family) return {};
  const int width = TahomaTextWidth(text, font.weight);
  return Number(static_cast<int>(width * font.points / kMeasured.points));
}

class FormPainter {
 public:
  explicit FormPainter(SvgWriter& svg) : svg_(svg) {}

  void Paint(const Container& container) {
    for (FormControl* control : container.Controls())
      if (control->Visible()) WithKind(*control, *this);
  }

  void operator()(Label& label) {
    const Rect& at = label.At();
    if (!label.Wraps()) return Text(label, at.left, at.top, label.Caption());
    int top = at.top;
    for (const std::string& line : TextLines(label.Caption(), label.TextFont().weight, at.width)) {
      Text(label, at.left, top, line);
      top += kLine;
    }
  }

  void operator()(TextBox& box) {
    const bool gray = box.BackColor() == SystemColor::buttonFace;
    Box(box.At(), gray ? kFace : kWhite);
    const Rect inner = Inner(box.At());
    Clipped(inner, [&] {
      if (!box.MultiLine()) return Text(box, inner.left, Middle(inner), box.Text());
      int top = inner.top;
      for (const std::string& line : TextLines(box.Text(), box.TextFont().weight, inner.width)) {
        Text(box, inner.left, top, line);
        top += kLine;
      }
    });
  }

  void operator()(ComboBox& box) {
    Box(box.At(), kWhite);
    const Rect inner = Inner(box.At());
    Clipped(inner, [&] { Text(box, inner.left, Middle(inner), box.Text()); });
    Arrow({box.At().left + box.At().width - kArrow, box.At().top, kArrow, box.At().height});
  }

  void operator()(CheckBox& box) {
    const Rect mark = Mark(box.At());
    Box(mark, kWhite);
    if (box.Value())
      Path("M" + Number(mark.left + 40) + ' ' + Number(mark.top + 95) + " l45 50 l75 -100");
    Text(box, mark.left + kMark + kMargin, Middle(box.At()), box.Caption());
  }

  void operator()(OptionButton& button) {
    const Rect mark = Mark(button.At());
    Circle(mark, kMark / 2, kWhite, kEdge);
    if (button.Value()) Circle(mark, kMark / 4, kText, kText);
    Text(button, mark.left + kMark + kMargin, Middle(button.At()), button.Caption());
  }

  void operator()(CommandButton& button) {
    Button(button, button.At(), button.Caption(),
           button.DialogRole() == CommandButton::Role::acceptsDialog);
  }

  void operator()(Frame& frame) { Box(frame.At(), "none"); }

  void operator()(PictureBox& picture) {
    Circle(picture.At(), std::min(picture.At().width, picture.At().height) / 2, kAccent, kAccent);
    const Rect& at = picture.At();
    svg_.Content("text",
                 {{"x", Number(at.left + at.width / 2)},
                  {"y", Number(at.top + at.height / 2 + 110)},
                  {"font-size", "320"},
                  {"font-weight", "bold"},
                  {"text-anchor", "middle"},
                  {"fill", std::string(kWhite)}},
                 "i");
  }

  void operator()(TabControl& tabs) {
    const Rect& at = tabs.At();
    const auto& panels = tabs.Controls();
    Box({at.left, at.top + kTabRowHeight, at.width, at.height - kTabRowHeight}, kFace);
    int left = at.left;
    for (std::size_t tab = 0; tab < panels.size(); ++tab) {
      const std::string_view caption = panels[tab]->Caption();
      const int width = TahomaTextWidth(caption, tabs.TextFont().weight) + 4 * kMargin;
      const bool open = tab == tabs.SelectedTab();
      Box({left, at.top + (open ? 0 : 45), width, kTabRowHeight - (open ? 0 : 45)},
          open ? kFace : kHead);
      Text(tabs, left + 2 * kMargin, at.top + 90, caption);
      left += width;
    }
    if (!panels.empty()) WithKind(*panels[tabs.SelectedTab()], *this);
  }

  void operator()(TabPanel& panel) {
    const Rect& tabs = static_cast<TabControl&>(panel.Parent()).At();
    svg_.Open("g", {{"transform", "translate(" + Number(tabs.left + panel.At().left) + ' ' +
                                      Number(tabs.top + panel.At().top) + ')'}});
    Paint(panel);
    svg_.Close("g");
  }

  void operator()(PropertyGrid& grid) {
    const Rect& at = grid.At();
    Box(at, kWhite);
    Clipped(at, [&] {
      int top = at.top;
      if (!grid.Caption().empty()) {
        Box({at.left, top, at.width, kRow}, kHead);
        Text(grid, at.left + kMargin, top + 40, grid.Caption());
        top += kRow;
      }
      for (const auto& item : grid.Items()) {
        GridItem(grid, *item, {at.left, top, at.width, kRow}, item.get() == grid.SelectedItem());
        top += kRow;
      }
    });
  }

  void operator()(Grid& grid) {
    const Rect& at = grid.At();
    Box(at, kWhite);
    const auto& columns = grid.Columns();
    if (columns.empty()) return;
    const int width = at.width / static_cast<int>(columns.size());
    for (std::size_t column = 0; column < columns.size(); ++column) {
      const int left = at.left + width * static_cast<int>(column);
      Box({left, at.top, width, kRow}, kHead);
      Text(grid, left + kMargin, at.top + 40, columns[column].caption);
      const auto shown =
          std::min<std::size_t>(grid.RowCount(), static_cast<std::size_t>(at.height / kRow - 1));
      for (std::size_t row = 0; row < shown; ++row) {
        const int top = at.top + kRow * static_cast<int>(row + 1);
        Clipped({left, top, width - kMargin, kRow},
                [&] { Text(grid, left + kMargin, top + 40, grid.Cell(row, column)); });
      }
    }
  }

  void operator()(Timer&) {}

 private:
  void GridItem(const PropertyGrid& grid, const PropertyGridItem& item, const Rect& row,
                bool selected) {
    const int half = row.width / 2;
    const int text = row.top + 40;
    const Rect value = {row.left + half, row.top, row.width - half, row.height};
    const std::string_view ink = grid.Enabled() && item.Enabled() ? kText : kGray;
    switch (item.Kind()) {
      case ItemKind::category:
        Box(row, kHead);
        Write(row.left + kMargin, text, item.Caption(), kBoldFont, ink);
        return;
      case ItemKind::button:
        Button(grid, {row.left + kMargin, row.top, row.width - 2 * kMargin, row.height},
               item.Caption(), false, ink);
        return;
      case ItemKind::entry:
        Write(row.left + kMargin, text, item.Caption(), grid.TextFont(), ink);
        return;
      default:
        break;
    }
    Box({row.left, row.top, half, row.height}, selected ? kHead : kWhite);
    Write(row.left + kMargin, text, item.Caption(), grid.TextFont(), ink);
    Box(value, kWhite);
    Clipped(Inner(value),
            [&] { Write(value.left + kMargin, text, ToText(item.Value()), grid.TextFont(), ink); });
    const Rect end = {value.left + value.width - kArrow, value.top, kArrow, value.height};
    if (item.Kind() == ItemKind::list) Arrow(end);
    if (item.Kind() == ItemKind::color) Button(grid, end, "...", false, ink);
  }

  static Rect Inner(const Rect& at) {
    return {at.left + kMargin, at.top + kTwipsPerPixel, at.width - 2 * kMargin,
            at.height - 2 * kTwipsPerPixel};
  }
  static int Middle(const Rect& at) { return at.top + (at.height - kLine) / 2; }
  static Rect Mark(const Rect& at) { return {at.left, Middle(at), kMark, kMark}; }

  void Text(const FormControl& control, int left, int top, std::string_view text) {
    Write(left, top, text, control.TextFont(), control.Enabled() ? kText : kGray);
  }
  void Write(int left, int top, std::string_view text, const Font& font, std::string_view ink,
             bool centred = false) {
    if (text.empty()) return;
    const std::string length = LengthOf(text, font);
    svg_.Content("text",
                 {{"x", Number(left)},
                  {"y", Number(top + kLineBaseline)},
                  {"font-family", std::string(font.family)},
                  {"font-size", Number(static_cast<int>(font.points * kTwipsPerPoint))},
                  {"font-weight", font.weight == FontWeight::bold ? "bold" : "normal"},
                  {"text-anchor", centred ? "middle" : "start"},
                  {"fill", std::string(ink)},
                  {"xml:space", "preserve"},
                  {"textLength", length},
                  {"lengthAdjust", length.empty() ? "" : "spacingAndGlyphs"}},
                 text);
  }
  void Button(const FormControl& control, const Rect& at, std::string_view caption, bool accepts,
              std::string_view ink = {}) {
    Box(at, "#e6e6e6", accepts ? kAccent : kEdge, "45");
    if (ink.empty()) ink = control.Enabled() ? kText : kGray;
    Write(at.left + at.width / 2, Middle(at), caption, control.TextFont(), ink, true);
  }
  void Box(const Rect& at, std::string_view fill, std::string_view edge = kEdge,
           std::string_view corner = {}) {
    svg_.Element("rect", {{"x", Number(at.left)},
                          {"y", Number(at.top)},
                          {"width", Number(at.width)},
                          {"height", Number(at.height)},
                          {"rx", std::string(corner)},
                          {"fill", std::string(fill)},
                          {"stroke", std::string(edge)},
                          {"stroke-width", edge.empty() ? "" : "15"}});
  }
  void Circle(const Rect& at, int radius, std::string_view fill, std::string_view edge) {
    svg_.Element("circle", {{"cx", Number(at.left + at.width / 2)},
                            {"cy", Number(at.top + at.height / 2)},
                            {"r", Number(radius)},
                            {"fill", std::string(fill)},
                            {"stroke", std::string(edge)},
                            {"stroke-width", "15"}});
  }
  void Path(const std::string& path) {
    svg_.Element(
        "path",
        {{"d", path}, {"fill", "none"}, {"stroke", std::string(kText)}, {"stroke-width", "25"}});
  }
  void Arrow(const Rect& at) {
    Box(at, kHead);
    Path("M" + Number(at.left + at.width / 2 - 50) + ' ' + Number(at.top + at.height / 2 - 25) +
         " l50 50 l50 -50");
  }
  template <class Draw>
  void Clipped(const Rect& at, const Draw& draw) {
    const std::string id = "clip" + Number(clips_++);
    svg_.Open("clipPath", {{"id", id}});
    Box(at, {}, {});
    svg_.Close("clipPath");
    svg_.Open("g", {{"clip-path", "url(#" + id + ')'}});
    draw();
    svg_.Close("g");
  }

  SvgWriter& svg_;
  int clips_ = 0;
};

}  // namespace

std::string FormPicture(Form& form) {
  const Size& size = form.FormSize();
  const int height = size.height + kCaptionHeight;
  SvgWriter svg;
  svg.Open("svg", {{"xmlns", "http://www.w3.org/2000/svg"},
                   {"width", Number(size.width / kTwipsPerPixel)},
                   {"height", Number(height / kTwipsPerPixel)},
                   {"viewBox", "0 0 " + Number(size.width) + ' ' + Number(height)}});
  svg.Content("title", {}, form.Caption());
  svg.Element("rect", {{"width", Number(size.width)},
                       {"height", Number(height)},
                       {"fill", std::string(kFace)},
                       {"stroke", std::string(kEdge)},
                       {"stroke-width", "30"}});
  svg.Element("rect", {{"width", Number(size.width)},
                       {"height", Number(kCaptionHeight)},
                       {"fill", std::string(kHead)}});
  svg.Content("text",
              {{"x", "120"},
               {"y", "240"},
               {"font-family", "Tahoma"},
               {"font-size", "165"},
               {"font-weight", "bold"},
               {"textLength", LengthOf(form.Caption(), kBoldFont)},
               {"lengthAdjust", "spacingAndGlyphs"}},
              form.Caption());
  svg.Open("g", {{"transform", "translate(0 " + Number(kCaptionHeight) + ')'}});
  FormPainter(svg).Paint(form);
  svg.Close("g");
  svg.Close("svg");
  return svg.Take();
}

}  // namespace kvo
