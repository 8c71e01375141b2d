#include "pages/propGeneralFormat.h"

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
    // Deliberate: the last three name the function of the long time. Only key and pattern are used.
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
  for (const DataFormat& format : kFormats)
    cboFormat.AddItem(std::string(format.pattern), format.CaptionWithSample());
}

void propGeneralFormat::cboFormat_Change() {
  Changed(true);
  const std::string format = ToText(cboFormat.Held());
  lblFormatString.Caption(format.empty() ? std::string(kNoFormat) : format);
}

}  // namespace kvo
