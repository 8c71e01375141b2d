// The control frame: what every design-time control is and does.
#pragma once

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "common/frame/DesignBox.h"
#include "common/frame/PropertyBag.h"
#include "common/frame/PropertyRow.h"
#include "common/values/Localized.h"
#include "common/values/Object.h"

namespace kvo {

class Control;

// The one method of every control, beside its properties.
inline constexpr std::string_view kRuntimeTextMethod = "GetRuntimeText";

// What a failing bag call or assignment does while a control is loaded: it ends the load or, in one
// class, skips that key.
enum class ReadFailure { endsLoad, skipsKey };

// Under which toolboxes show the classes.
namespace groups {
inline constexpr Localized fields = {"Felder", "Fields"};
inline constexpr Localized logic = {"Logik", "Logic"};
inline constexpr Localized shop = {"Shop", "Shop"};
inline constexpr Localized sending = {"Versand", "Sending"};
}  // namespace groups

// A class's description, beside its rows.
struct ControlDesign {
  std::string_view name;
  Localized title;  // for users; the description is one line
  Localized description;
  Localized group;            // one of `groups`
  std::string_view basename;  // the default of the tag's name
  // The name under which the template engine knows the control, where the default is another one:
  // seven classes default to the name of the print control.
  std::string_view tagName{};
  BoxDesign box;
  std::span<const std::string_view> pages{};  // class names, in the order of their tabs
  ReadFailure readFailure = ReadFailure::endsLoad;
};

// The whole contract of a control class, made of its rows.
struct ControlClass : ControlDesign {
  std::span<const PropertyRow> properties;  // in interface order
  std::span<const PropertyRow> bag;         // those with a key, in persisted order
  std::shared_ptr<Control> (*create)();

  // The basename to give a new control.
  std::string_view TagName() const { return tagName.empty() ? basename : tagName; }
  // Finds a property by its name in any case; nullptr when there is none.
  const PropertyRow* FindProperty(std::string_view propertyName) const;
  const PropertyRow* FindKey(std::string_view key) const;  // by the exact key
};

// A control instance. Its constructor is the initialise step, its destructor the terminate event.
// Setters store and refresh the box; they never notify the host. For one thread.
class Control : public Object {
 public:
  virtual const ControlClass& Class() const = 0;

  // The host's load: every key in persisted order, each with its read default. Then the layout.
  void ReadProperties(PropertyBag& bag);
  // The host's save: the same keys in the same order, each with its write default.
  void WriteProperties(PropertyBag& bag) const;

  // The markup that stands in the page for this control. Depends on the properties alone.
  std::string GetRuntimeText() const;
  // Appends it to `out`, which after a failure may hold a part of it. By default it is one empty
  // tag with the attributes of the class's rows.
  virtual void AppendRuntimeText(std::string& out) const;

  // The current picture. Measures text here, not when a property changes.
  Box DesignTimeBox() const;
  // The host's resize event.
  virtual void Resize() { laidOut_ = true; }
  // The user's double click. Returns false to leave it to the host.
  virtual bool DblClick(WindowHandle /*owner*/) { return false; }

  static constexpr std::array<PropertyInput, 0> inputs{};  // of the class's own properties

  Text Namespace;
  Shown<Text> basename{*this};
  Shown<Text> DisplayBasename{*this};

  // Late binding over the class's interface, and the method GetRuntimeText.
  Variant Get(std::string_view name) override;
  void Let(std::string_view name, Variant value) override;
  Variant Call(std::string_view name, std::span<const Variant> arguments) override;
  std::optional<std::vector<std::string>> PropertyPages() override;

  // Refreshes the box, which from now on shows the properties instead of the design captions.
  void UpdateDisplay() { captionsShown_ = laidOut_ = true; }

 protected:
  // The attributes that the class's rows emit.
  void AppendAttributes(TagWriter& tag) const;

 private:
  bool captionsShown_ = false;
  bool laidOut_ = false;
};

namespace rows {

// The rows that every class begins with. Only the default base name differs.
constexpr std::array<PropertyRow, 3> OfFrame(std::string_view basename) {
  using Self = Control;
  return {PropertyRow(1, KVO(Namespace), "namespace", "kv", "kv", kNever),
          PropertyRow(2, KVO(basename), "basename", basename, basename, kNever),
          PropertyRow(3, KVO(DisplayBasename), "display-basename", "", "", kNever)};
}
inline constexpr PropertyInput kFrameInputs[] = {
    {.property = "Namespace",
     .caption = {"Namensraum", "Namespace"},
     .help = {"Steht im Laufzeittext vor dem Namen des Tags, wie „kv“ in „kv:print“",
              "Precedes the tag's name in the runtime text, like \"kv\" in \"kv:print\""},
     .advanced = true},
    {.property = "basename",
     .caption = {"Name des Tags", "Name of the tag"},
     .help = {"Unter diesem Namen kennt die Template-Engine das Control",
              "The name by which the template engine knows the control"},
     .advanced = true},
    {.property = "DisplayBasename",
     .caption = {"Name im Kästchen", "Name in the box"},
     .help = {"Steht fett im Kästchen; ohne ihn der Name des Tags",
              "Stands in the box in bold; without it, the name of the tag"},
     .advanced = true},
};

template <class Rows, class Inputs>
constexpr void AddInputs(Rows& all, const Inputs& inputs) {
  for (const PropertyInput& input : inputs) {
    const auto row = std::find_if(all.begin(), all.end(), [&input](const PropertyRow& each) {
      return each.name == input.property;
    });
    if (row == all.end()) throw "an input names no property of the class";  // ends the compilation
    row->input = input;
  }
}

template <std::size_t count, class Picks>
consteval std::size_t Count(const std::array<PropertyRow, count>& all, Picks picks) {
  return static_cast<std::size_t>(std::count_if(all.begin(), all.end(), picks));
}

}  // namespace rows

// Base of a control class: makes its contract from its `design`, `rows` and `inputs`.
template <class Class_, class Base = Control>
class ControlOf : public Base {
 public:
  using Base::Base;

  static const ControlClass& Contract() {
    static constexpr auto kRows = [] {
      constexpr auto frame = rows::OfFrame(Class_::design.basename);
      std::array<PropertyRow, frame.size() + std::size(Class_::rows)> all;
      std::copy(std::begin(Class_::rows), std::end(Class_::rows),
                std::copy(frame.begin(), frame.end(), all.begin()));
      rows::AddInputs(all, rows::kFrameInputs);
      rows::AddInputs(all, Class_::inputs);
      return all;
    }();
    static_assert(rows::Count(kRows, [](const PropertyRow& row) { return row.emission.last; }) <=
                  1);
    static constexpr auto kProperties = [] {
      constexpr auto isProperty = [](const PropertyRow& row) { return row.id != 0; };
      std::array<PropertyRow, rows::Count(kRows, isProperty)> picked;
      std::copy_if(kRows.begin(), kRows.end(), picked.begin(), isProperty);
      std::sort(picked.begin(), picked.end(),
                [](const PropertyRow& a, const PropertyRow& b) { return a.id < b.id; });
      return picked;
    }();
    static constexpr auto kBag = [] {
      constexpr auto isStored = [](const PropertyRow& row) { return !row.key.empty(); };
      std::array<PropertyRow, rows::Count(kRows, isStored)> picked;
      std::copy_if(kRows.begin(), kRows.end(), picked.begin(), isStored);
      return picked;
    }();
    static constexpr ControlClass contract{
        Class_::design, kProperties, kBag,
        []() -> std::shared_ptr<Control> { return std::make_shared<Class_>(); }};
    return contract;
  }
  const ControlClass& Class() const final { return Contract(); }

 protected:
  using Self = Class_;
};

}  // namespace kvo
