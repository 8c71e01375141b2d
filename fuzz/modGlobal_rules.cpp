#include "fuzz/modGlobal_rules.h"

#include <stdexcept>
#include <string>

#include "common/modGlobal.h"
#include "tests/core/Definitions.h"

namespace kvo {
namespace {

void Expect(bool holds, const char* rule) {
  if (!holds) throw std::logic_error(rule);
}

}  // namespace

void CheckTextHelpers(std::string_view view) {
  const std::string text(view);
  const std::string encoded = EncodeMarkupTokens(text);
  Expect(encoded == EncodeByDefinition(text), "EncodeMarkupTokens");
  Expect(EncodeMarkupTokens(encoded) == encoded, "EncodeMarkupTokens twice");
  Expect(DecodeMarkupTokens(text) == DecodeByDefinition(text), "DecodeMarkupTokens");
  Expect(TrimCrLf(text) == TrimByDefinition(text), "TrimCrLf");
  Expect(FixAmpersands(FixAmpersands(text)) == FixAmpersands(text), "FixAmpersands twice");
  // The expression's engine needs a stack frame per character.
  if (text.size() <= 64)
    Expect(FixAmpersands(text) == FixAmpersandsByDefinition(text), "FixAmpersands");

  std::string appended = "x";
  AppendFixAmpersands(appended, text);
  Expect(appended == "x" + FixAmpersands(text), "AppendFixAmpersands");

  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  const bool parsed = ParseColor(text, red, green, blue);
  Expect(parsed || (red == 255 && green == 255 && blue == 255), "ParseColor");
}

}  // namespace kvo
