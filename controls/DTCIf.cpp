#include "controls/DTCIf.h"

#include "common/frame/TagWriter.h"
#include "controls/BlockLevel.h"

namespace kvo {

const ControlClass& DTCIf::Contract() {
  using Self = DTCIf;
  static constexpr auto properties = FrameProperties({
      KVO_PROPERTY(4, DisplayValue),
      KVO_PROPERTY(5, Test),
      KVO_PROPERTY(6, OnTrue),
      KVO_PROPERTY(7, OnFalse),
      KVO_PROPERTY(8, Office),
  });
  // clang-format off
  static constexpr auto bag = FrameKeys("if", {
      // key            read default  write default  in and out
      {"display-value", "",           "",
       InThrough<&Self::storedDisplayValue_>(properties, "DisplayValue")},
      {"test",          "",           "",            kDirect<&Self::test_>},
      {"on-true",       "",           "",            kDirectTrimmed<&Self::storedOnTrue_>},
      {"on-false",      "",           "",            kDirectTrimmed<&Self::storedOnFalse_>},
  });
  // clang-format on
  static constexpr auto labels =
      SideBySideLabels("If", "lblField", "...", [](const Control& control) {
        // Deliberate: the box shows the token form of the description.
        const std::string& shown = static_cast<const Self&>(control).storedDisplayValue_;
        return shown.empty() ? std::string_view("<keine Beschreibung>") : shown;
      });
  static constexpr std::string_view pages[] = {"propIfGeneral"};
  static constexpr ControlClass contract{
      .name = "DTCIf",
      .properties = properties,
      .bag = bag,
      .box = SideBySideBox(labels),
      .pages = pages,
      .create = []() -> std::shared_ptr<Control> { return std::make_shared<Self>(); },
      .readFailure = ReadFailure::skipsKey,
  };
  return contract;
}

void DTCIf::AppendRuntimeText(std::string& out) const {
  if (test_.empty()) return;
  constexpr std::string_view kElse = "else";
  out += kBlockStart;
  TagWriter tag(out, Namespace(), basename());
  tag.Attribute<"test">(test_);
  if (!storedDisplayValue_.empty()) {
    // Deliberate: the attribute carries the token form. Encoding it once more would change nothing.
    tag.AttributeAsIs<"display-value">(storedDisplayValue_);
  }
  tag.Close();
  AppendDecodeMarkupTokens(out, storedOnTrue_);
  if (!storedOnFalse_.empty()) {
    TagWriter(out, Namespace(), kElse).Close();  // "else" whatever the base name is
    AppendDecodeMarkupTokens(out, storedOnFalse_);
    AppendEndTag(out, Namespace(), kElse);
  }
  AppendEndTag(out, Namespace(), basename());
  out += kBlockEnd;
}

}  // namespace kvo
