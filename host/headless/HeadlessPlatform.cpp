#include "host/headless/HeadlessPlatform.h"

#include <array>
#include <cstdint>
#include <random>

#include "common/values/GermanFormat.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

template <class T>
std::optional<T> TakeFirst(std::deque<std::optional<T>>& answers) {
  if (answers.empty()) return std::nullopt;
  std::optional<T> answer = std::move(answers.front());
  answers.pop_front();
  return answer;
}

}  // namespace

void HeadlessPlatform::ShowMessage(WindowHandle, std::string_view text) {
  messages.emplace_back(text);
}

std::optional<std::string> HeadlessPlatform::InputPrompt(std::string_view prompt,
                                                         std::string_view title) {
  prompts.push_back({std::string(prompt), std::string(title)});
  return TakeFirst(promptAnswers);
}

void HeadlessPlatform::ShowModal(Form& form) {
  if (whileModal) whileModal(form);
}

ColorNumber HeadlessPlatform::ChooseColor(ColorNumber preset) {
  colorPresets.push_back(preset);
  return TakeFirst(colorAnswers).value_or(preset);
}

int ProgramPlatform::TextWidth(std::string_view text, FontWeight weight) {
  return TahomaTextWidth(text, weight);
}

GuidText ProgramPlatform::NewGuid() {
  std::random_device source;
  std::array<std::uint8_t, 16> bytes{};
  for (std::size_t at = 0; at < bytes.size(); at += 4) {
    const std::uint32_t random = source();
    for (std::size_t i = 0; i < 4; ++i)
      bytes[at + i] = static_cast<std::uint8_t>(random >> (8 * i));
  }
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);  // version 4: random
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  GuidText guid{};
  auto to = guid.characters.begin();
  *to++ = '{';
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (at == 4 || at == 6 || at == 8 || at == 10) *to++ = '-';
    *to++ = kDigits[bytes[at] >> 4U];
    *to++ = kDigits[bytes[at] & 15U];
  }
  *to = '}';
  return guid;
}

std::string ProgramPlatform::Format(const Variant& value, std::string_view pattern) {
  return GermanFormat(value, pattern);
}

void HeadlessPlatform::ShowPropertyFrame(WindowHandle owner, std::string_view caption,
                                         ObjectRef object, const std::vector<std::string>& pages) {
  frames.push_back({owner, std::string(caption), std::move(object), pages});
  if (whileFrame) whileFrame(Frame(frames.back()));
}

ObjectRef ProgramPlatform::NewRecordset() {
  if (recordsets) return recordsets();
  throw RuntimeError(ErrorNumber::cannotCreateObject, "Recordset");
}

}  // namespace kvo
