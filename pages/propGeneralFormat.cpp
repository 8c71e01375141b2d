#include "pages/propGeneralFormat.h"

#include <algorithm>

namespace kvo {
namespace {

Variant Number() { return 1134.23; }
Variant Date() { return "23.04.2004 16:09:53"; }

// clang-format off
constexpr DataFormat kFormats[] = {
    // key                      caption              function                   pattern                        sample
    {"formatCurrency",          "Standard-Währung",  "formatCurrency",          "#,##0.00",                    Number},
    {"formatPrimaryCurrency",   "Primäre Währung",   "formatPrimaryCurrency",   "primary-currency"},
    {"formatSecondaryCurrency", "Sekundäre Währung", "formatSecondaryCurrency", "secondary-currency"},
    {"formatInteger",           "Ganzzahl",          "formatInteger",           "#,##0",                       Number},
    {"formatShortDate",         "Datum",             "formatShortDate",         "dd.mm.yyyy",                  Date},
    {"formatLongDate",          "Datum",             "formatLongDate",          "dd. mmmm yyyy",               Date},
    {"formatShortTime",         "Uhrzeit",           "formatShortTime",         "hh:mm",                       Date},
    {"formatLongTime",          "Uhrzeit",           "formatLongTime",          "hh:mm:ss",                    Date},
    // The last three name the function of the long time: deliberate, only key and pattern are used.
    {"formatShortDateTime",     "Datum & Uhrzeit",   "formatLongTime",          "dd.mm.yyyy hh:mm",            Date},
    {"formatLongDateTime",      "Datum & Uhrzeit",   "formatLongTime",          "dd.mm.yyyy hh:mm:ss",         Date},
    {"formatExtremeDateTime",   "Datum & Uhrzeit",   "formatLongTime",          "dd. mmmm yyyy u\\m hh:mm:ss", Date},
};
// clang-format on

}  // namespace

std::span<const DataFormat> DataFormats() { return kFormats; }

std::string DataFormat::CaptionWithSample() const {
  std::string text(caption);
  if (sample != nullptr) text += " (" + ThePlatform().Format(sample(), pattern) + ")";
  return text;
}

void propGeneralFormat::Initialize() {
  for (const DataFormat& format : kFormats) cboFormat.AddItem(format.CaptionWithSample());
}

void propGeneralFormat::SelectionChanged() {
  const std::string stored = Read("Format");
  const auto* row = std::ranges::find(kFormats, stored, &DataFormat::pattern);
  if (row == std::end(kFormats))
    cboFormat.Text(stored);
  else
    cboFormat.ListIndex(static_cast<int>(row - kFormats));
}

std::optional<std::string_view> propGeneralFormat::ChosenPattern() const {
  if (cboFormat.ListIndex() == kNoRow) return std::nullopt;
  return kFormats[cboFormat.ListIndex()].pattern;
}

void propGeneralFormat::cboFormat_Change() {
  Changed(true);
  const std::string_view typed = cboFormat.Text().empty() ? kNoFormat : cboFormat.Text();
  lblFormatString.Caption(std::string(ChosenPattern().value_or(typed)));
}

void propGeneralFormat::ApplyChanges() {
  Write("Format", ChosenPattern().value_or(cboFormat.Text()));
}

}  // namespace kvo
