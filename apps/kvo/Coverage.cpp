#include "apps/kvo/Coverage.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "document/page/Utf8.h"

namespace kvo {
namespace {

using SwitchKind = preview::Switch::Kind;

struct SwitchWords {
  std::string_view id;  // in JSON
  Localized name;       // of a switch without one of its own
  Localized holds;
  Localized fails;
};
constexpr SwitchWords kSwitchWords[] = {
    {"condition", {"Bedingung", "condition"}, {"wahr", "true"}, {"falsch", "false"}},
    {"products", {"Produktliste", "product list"}, {"gefüllt", "filled"}, {"leer", "empty"}},
    {"positions", {"Positionsliste", "position list"}, {"gefüllt", "filled"}, {"leer", "empty"}},
};
const SwitchWords& WordsOf(SwitchKind kind) { return kSwitchWords[static_cast<std::size_t>(kind)]; }

constexpr std::size_t kColumns = 4;
using Cells = std::array<std::string, kColumns>;

std::size_t LengthOf(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }));
}

// In one line, and not too long for a table.
std::string Shortened(std::string_view text) {
  constexpr std::size_t kMost = 40;
  std::string line;
  for (std::size_t length = 0; !text.empty(); ++length) {
    if (length == kMost) return line + "…";
    const std::size_t size = std::max<std::size_t>(page::FirstUtf8Character(text).length, 1);
    if (static_cast<unsigned char>(text[0]) < 0x20)
      line += ' ';
    else
      line += text.substr(0, size);
    text.remove_prefix(size);
  }
  return line;
}

std::string SwitchName(const preview::Switch& each) {
  std::string name = Shortened(each.name.empty() ? Say(WordsOf(each.kind).name) : each.name);
  if (!each.id.empty()) name += " (" + Shortened(each.id) + ')';
  return name;
}

// The variants that show a form, such as "1, 3".
std::string ShownBy(const std::vector<std::size_t>& variants) {
  constexpr std::size_t kMost = 6;
  if (variants.empty()) return Say({"keine", "none"});
  std::string shown;
  for (std::size_t i = 0; i < variants.size() && i < kMost; ++i)
    shown += (i == 0 ? "" : ", ") + std::to_string(variants[i]);
  return variants.size() > kMost ? shown + ", …" : shown;
}

std::string Aligned(const std::vector<Cells>& table) {
  std::array<std::size_t, kColumns> widths{};
  for (const Cells& cells : table)
    for (std::size_t i = 0; i < kColumns; ++i) widths[i] = std::max(widths[i], LengthOf(cells[i]));
  std::string text;
  for (const Cells& cells : table) {
    for (std::size_t i = 0; i < kColumns; ++i) {
      text += cells[i];
      if (i + 1 < kColumns) text.append(widths[i] + 2 - LengthOf(cells[i]), ' ');
    }
    text += '\n';
  }
  return text;
}

}  // namespace

void Coverage::Add(const preview::Preview& variant) {
  ++variants_;
  for (std::size_t i = 0; i < rows_.size() && i < variant.switches.size(); ++i) {
    if (!variant.switches[i].reached) continue;
    (variant.switches[i].held ? rows_[i].holds : rows_[i].fails).push_back(variants_);
  }
}

std::string Coverage::Table() const {
  if (switches_.empty())
    return Say({"Die Seite hat keine Bedingungen und Listen; sie sieht immer gleich aus.\n",
                "The page has no conditions and lists; it always looks the same.\n"});
  std::vector<Cells> table = {{Say({"Stelle", "place"}), Say({"Bedingung oder Liste", "switch"}),
                               Say({"Form", "form"}), Say({"Variante", "variant"})}};
  std::size_t missing = 0;
  for (std::size_t i = 0; i < switches_.size(); ++i) {
    const preview::Switch& each = switches_[i];
    const SwitchWords& words = WordsOf(each.kind);
    table.push_back({std::to_string(each.place.line) + ':' + std::to_string(each.place.column),
                     SwitchName(each), Say(words.holds), ShownBy(rows_[i].holds)});
    table.push_back({"", "", Say(words.fails), ShownBy(rows_[i].fails)});
    missing += (rows_[i].holds.empty() ? 1U : 0U) + (rows_[i].fails.empty() ? 1U : 0U);
  }
  const std::size_t forms = 2 * switches_.size();
  return Aligned(table) + '\n' +
         Say({"Gezeigte Formen: {} von {}; Varianten: {}.\n",
              "Forms shown: {} of {}; variants: {}.\n"},
             {std::to_string(forms - missing), std::to_string(forms), std::to_string(variants_)});
}

Json Coverage::List() const {
  Json list = Json::array();
  for (std::size_t i = 0; i < switches_.size(); ++i) {
    const preview::Switch& each = switches_[i];
    list.push_back({{"line", each.place.line},
                    {"column", each.place.column},
                    {"class", each.control},
                    {"id", each.id},
                    {"kind", WordsOf(each.kind).id},
                    {"name", each.name},
                    {"holds", rows_[i].holds},
                    {"fails", rows_[i].fails}});
  }
  return list;
}

}  // namespace kvo
