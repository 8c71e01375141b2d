#include "document/check/Check.h"

#include <algorithm>

#include "common/values/RuntimeError.h"
#include "document/check/Balance.h"
#include "document/check/ControlRules.h"
#include "document/check/OwnText.h"
#include "document/check/Products.h"

namespace kvo::check {
namespace {

// A failing control has been reported by the page's own check; rules that need no text go on.
std::string RuntimeTextOrNothing(const Control& control) {
  try {
    return control.GetRuntimeText();
  } catch (const RuntimeError&) {
    return {};
  }
}

void NoteTagOnly(const Checked& checked, Balance& balance) {
  if (!checked.Has("OpeningTagOnly")) return;
  const bool opens = checked.Flag("OpeningTagOnly");
  const bool closes = checked.Flag("ClosingTagOnly");
  const std::string name = checked.Text("Value");
  if (opens == closes || name.empty()) return;
  if (opens)
    balance.Open(name, checked.found);
  else
    balance.Close(name, checked.found);
}

}  // namespace

std::span<const Rule> Rules() {
  static const std::vector<Rule> rules = [] {
    std::vector<Rule> all = {kUnbalanced, kUnknownProduct, kProductsNotChecked};
    for (const ControlRule& rule : ControlRules()) all.push_back(rule.rule);
    return all;
  }();
  return rules;
}

page::Problems CheckPage(const page::Page& page, const ObjectRef& office,
                         ProductNumbers* products) {
  page::Problems problems = page::Check(page);
  const page::Inspection inspection = page::Inspect(page);
  KnownFields fields = FieldsOf(office);
  Balance balance;
  std::optional<ProductCheck> productCheck;
  if (products != nullptr) productCheck.emplace(*products);
  for (const page::FoundControl& found : inspection.controls) {
    if (found.contract == nullptr || found.broken) continue;
    std::shared_ptr<Control> control;
    try {
      control = page::Load(*found.contract, found.bag);
    } catch (const RuntimeError&) {
      continue;  // reported by the page's own check
    }
    const Checked checked{found, control, fields, RuntimeTextOrNothing(*control)};
    NoteTagOnly(checked, balance);
    if (productCheck && checked.Has("SelectedProducts"))
      productCheck->Note(found, checked.Text("SelectedProducts"));
    for (const ControlRule& rule : ControlRules())
      rule.check(checked, [&](Message message) {
        problems.push_back({rule.rule.severity, rule.rule.id, found.place, found.className,
                            found.id, std::move(message), found.begin});
      });
  }
  const auto add = [&](page::Problems&& more) {
    std::ranges::move(more, std::back_inserter(problems));
  };
  add(balance.Take());
  if (productCheck) add(productCheck->Take());
  add(CheckOwnText(page, inspection.controls, fields));
  std::ranges::stable_sort(problems, {}, &page::Problem::offset);
  return problems;
}

}  // namespace kvo::check
