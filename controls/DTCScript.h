#pragma once

#include "common/frame/Control.h"

namespace kvo {

// Carries a block of template code or HTML verbatim. No pages of its own.
class DTCScript final : public ControlOf<DTCScript> {
 public:
  Shown<Text> DisplayValue{*this};
  TokenText HTMLContent;

  // Always emitted, even without content; exactly as typed, without escaping.
  void AppendRuntimeText(std::string& out) const override;

 private:
  static constexpr std::string_view kNoDescription = "...";
  static std::string_view Caption(const Control& control) {
    const auto& self = static_cast<const DTCScript&>(control);
    return self.DisplayValue().empty() ? kNoDescription : self.DisplayValue();
  }

 public:
  // clang-format off
  static constexpr PropertyRow rows[] = {
      // id property           key              read  write          emitted      stored
      {4,   KVO(DisplayValue), "display-value", "",   "",            kNever},
      {5,   KVO(HTMLContent),  "html-content",  "",   kAlwaysStored, kNever, kEncoding},
  };
  // clang-format on
  static constexpr PropertyInput inputs[] = {
      {"DisplayValue",
       {"Beschreibung", "Description"},
       {"Steht im Kästchen und sagt, worum es geht", "Shown in the box to say what it is for"}},
      {"HTMLContent",
       {"Anweisungen", "Statements"},
       {"Template-Code oder HTML; kommt unverändert in die Mail",
        "Template code or HTML; goes into the mail as it is"},
       InputKind::html},
  };
  static constexpr ControlDesign design = {
      .name = "DTCScript",
      .title = {"Skript", "Script"},
      .description = {"Anweisungen, die beim Versand laufen",
                      "Statements that run when the mail is sent"},
      .group = groups::logic,
      .basename = "script",
      .box = SideBySideBox("Script", "lblValue", kNoDescription, Caption),
  };
};

}  // namespace kvo
