// Rules that check one control at a time.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/frame/Control.h"
#include "document/check/Check.h"
#include "document/check/Fields.h"
#include "document/page/ControlChange.h"

namespace kvo::check {

// These rules also apply to the page's own text.
inline constexpr Rule kUnknownField{
    "unknown-field",
    page::Severity::error,
    {"Ein Kontakt- oder Bestellfeld, das nicht in office.json steht",
     "A contact or order field that is not in office.json"}};
inline constexpr Rule kUnknownOrderValue{"unknown-order-value",
                                         page::Severity::warning,
                                         {"Ein Wert der Bestellung, der nicht in office.json steht",
                                          "A value of the order that is not in office.json"}};

// Checks the controls of a page together.
inline constexpr Rule kUnbalanced{
    "unbalanced-element",
    page::Severity::error,
    {"Ein öffnendes Element ohne sein schließendes, oder umgekehrt",
     "An opening element without its closing one, or the other way round"}};

// A control being checked, loaded from its bag, and its runtime text.
struct Checked {
  const page::Page& page;
  const page::FoundControl& found;
  const std::shared_ptr<Control>& control;
  KnownFields& fields;
  std::string_view runtimeText;
  bool wantsFixes = true;

  bool Is(std::string_view className) const { return found.contract->name == className; }
  bool Has(std::string_view property) const {
    return found.contract->FindProperty(property) != nullptr;
  }
  std::string Text(std::string_view property) const { return ToText(control->Get(property)); }
  bool Flag(std::string_view property) const { return ToFlag(control->Get(property)); }

  // Returns the fix that changes the control; nothing when `change` fails or returns false, or when
  // the page cannot hold the change.
  std::optional<page::Fix> FixBy(Message title, const std::function<bool(Control&)>& change) const;
};

class Report {
 public:
  using Take = std::function<void(Message message, std::optional<page::Fix> fix)>;
  explicit Report(Take take) : take_(std::move(take)) {}

  void operator()(Message message, std::optional<page::Fix> fix = std::nullopt) const {
    take_(std::move(message), std::move(fix));
  }

 private:
  Take take_;
};

struct ControlRule {
  Rule rule;
  void (*check)(const Checked& checked, const Report& report);
};
std::span<const ControlRule> ControlRules();

}  // namespace kvo::check
