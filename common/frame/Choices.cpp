#include "common/frame/Choices.h"

#include "common/frame/Platform.h"

namespace kvo {
namespace {

Variant SampleNumber() { return 1134.23; }
Variant SampleDate() { return "23.04.2004 16:09:53"; }

constexpr Localized kDateCaption = {"Datum", "Date"};
constexpr Localized kTimeCaption = {"Uhrzeit", "Time"};
constexpr Localized kDateTimeCaption = {"Datum & Uhrzeit", "Date & time"};

// clang-format off
constexpr DataFormat kFormats[] = {
    // key                      caption                                     function                   pattern                        sample
    {"formatCurrency",          {"Standard-Währung", "Default currency"},   "formatCurrency",          "#,##0.00",                    SampleNumber},
    {"formatPrimaryCurrency",   {"Primäre Währung", "Primary currency"},    "formatPrimaryCurrency",   "primary-currency"},
    {"formatSecondaryCurrency", {"Sekundäre Währung", "Second currency"},   "formatSecondaryCurrency", "secondary-currency"},
    {"formatInteger",           {"Ganzzahl", "Whole number"},               "formatInteger",           "#,##0",                       SampleNumber},
    {"formatShortDate",         kDateCaption,                               "formatShortDate",         "dd.mm.yyyy",                  SampleDate},
    {"formatLongDate",          kDateCaption,                               "formatLongDate",          "dd. mmmm yyyy",               SampleDate},
    {"formatShortTime",         kTimeCaption,                               "formatShortTime",         "hh:mm",                       SampleDate},
    {"formatLongTime",          kTimeCaption,                               "formatLongTime",          "hh:mm:ss",                    SampleDate},
    // Deliberate: the last three name the function of the long time. Only key and pattern are used.
    {"formatShortDateTime",     kDateTimeCaption,                           "formatLongTime",          "dd.mm.yyyy hh:mm",            SampleDate},
    {"formatLongDateTime",      kDateTimeCaption,                           "formatLongTime",          "dd.mm.yyyy hh:mm:ss",         SampleDate},
    {"formatExtremeDateTime",   kDateTimeCaption,                           "formatLongTime",          "dd. mmmm yyyy u\\m hh:mm:ss", SampleDate},
};
// clang-format on

Choice Numbered(int number, const Localized& caption, const char* unit = "") {
  const std::string text = std::to_string(number);
  return {Filled(caption, std::initializer_list<std::string_view>{text}), text + unit};
}

}  // namespace

std::span<const DataFormat> DataFormats() { return kFormats; }

Message DataFormat::CaptionWithSample() const {
  const std::string shown =
      sample == nullptr ? "" : " (" + ThePlatform().Format(sample(), pattern) + ")";
  return {std::string(caption.german) + shown, std::string(caption.english) + shown};
}

namespace choices {

std::vector<Choice> Formats() {
  std::vector<Choice> choices;
  for (const DataFormat& format : kFormats)
    choices.push_back({format.CaptionWithSample(), format.pattern});
  return choices;
}

std::vector<Choice> Columns() {
  std::vector<Choice> choices;
  for (int n = 1; n <= 4; ++n) choices.push_back(Numbered(n, {"{}", "{}"}));
  return choices;
}

std::vector<Choice> Pixels() {
  std::vector<Choice> choices;
  for (int n = 0; n <= 10; ++n) choices.push_back(Numbered(n, {"{} Pixel", "{} px"}));
  return choices;
}

std::vector<Choice> FontFamilies() {
  std::vector<Choice> choices;
  for (const char* family :
       {"Arial, Helvetica, sans-serif", "Times New Roman, Times, serif",
        "Courier New, Courier, mono", "Georgia, Times New Roman, Times, serif",
        "Verdana, Arial, Helvetica, sans-serif", "Tahoma, Arial, Helvetica, sans-serif"})
    choices.push_back({{family, family}, family});
  return choices;
}

std::vector<Choice> FontSizes() {
  std::vector<Choice> choices;
  for (int n = 8; n <= 18; ++n) choices.push_back(Numbered(n, {"{} Punkte", "{} points"}, "pt"));
  return choices;
}

std::vector<Choice> Thumbnails() {
  return {{{"Nein", "None"}, "no"},
          {{"Linksbündig", "Left"}, "left"},
          {{"Rechtsbündig", "Right"}, "right"},
          {{"Obenbündig", "Top"}, "top"},
          {{"Untenbündig", "Bottom"}, "bottom"}};
}

}  // namespace choices
}  // namespace kvo
