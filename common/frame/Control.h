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
#include "common/frame/PropertyTable.h"
#include "common/values/Object.h"

namespace kvo {

class Control;

// The one method of every control, beside its properties.
inline constexpr std::string_view kRuntimeTextMethod = "GetRuntimeText";

// A failing bag call or assignment while loading ends the load - or, in one class, that key only.
enum class ReadFailure { endsLoad, skipsKey };

// The whole contract of a control class. Each class returns its own from `Contract()`.
struct ControlClass {
  std::string_view name;
  std::span<const PropertyRow> properties;  // in interface order
  std::span<const BagKey> bag;              // in persisted order
  BoxDesign box;
  std::span<const std::string_view> pages;  // class names, in the order of their tabs
  std::shared_ptr<Control> (*create)();
  ReadFailure readFailure = ReadFailure::endsLoad;

  // The row of a property, names without regard to case; nullptr when there is none.
  const PropertyRow* FindProperty(std::string_view propertyName) const;
  const BagKey* FindKey(std::string_view key) const;  // keys exactly
};

// A control instance. It is born as its initialise step leaves it; its end is the terminate event.
// Setters store and refresh the box; they never notify the host. One thread.
class Control : public Object {
 public:
  virtual const ControlClass& Class() const = 0;

  // The host's load: every key in persisted order, each with its read default. Then the layout.
  void ReadProperties(PropertyBag& bag);
  // The host's save: the same keys in the same order, each with its write default.
  void WriteProperties(PropertyBag& bag) const;

  // The markup that stands in the page for this control. Depends on the properties alone.
  std::string GetRuntimeText() const;
  // The same, appended to `out`. After a failure `out` may hold a part of the text.
  virtual void AppendRuntimeText(std::string& out) const = 0;

  // The picture as it looks now. Text is measured here, not when a property changes.
  Box DesignTimeBox() const;
  // The host's resize event.
  virtual void Resize() { laidOut_ = true; }
  // The user's double click. False: not handled; what happens then is the host's choice.
  virtual bool DblClick(WindowHandle /*owner*/) { return false; }

  const std::string& Namespace() const { return namespace_; }
  void Namespace(std::string_view sNewNamespace) { namespace_ = sNewNamespace; }
  const std::string& basename() const { return basename_; }
  void basename(std::string_view sNewBasename) {
    basename_ = sNewBasename;
    UpdateDisplay();
  }
  const std::string& DisplayBasename() const { return displayBasename_; }
  void DisplayBasename(std::string_view sNewDisplayBasename) {
    displayBasename_ = sNewDisplayBasename;
    UpdateDisplay();
  }

  // Late binding over the class's interface, and the method GetRuntimeText.
  Variant Get(std::string_view name) override;
  void Let(std::string_view name, Variant value) override;
  Variant Call(std::string_view name, std::span<const Variant> arguments) override;
  std::optional<std::vector<std::string>> PropertyPages() override;

 protected:
  // Refreshes the box: from now on it shows the properties instead of the design captions.
  void UpdateDisplay() { captionsShown_ = laidOut_ = true; }

 private:
  std::string namespace_;
  std::string basename_;
  std::string displayBasename_;
  bool captionsShown_ = false;
  bool laidOut_ = false;
};

namespace property_table {

using Self = Control;
inline constexpr std::array kFrameProperties = {
    KVO_PROPERTY(1, Namespace), KVO_PROPERTY(2, basename), KVO_PROPERTY(3, DisplayBasename)};

consteval std::array<BagKey, 3> FrameKeys(std::string_view basename) {
  return {BagKey{"namespace", "kv", "kv", Through(kFrameProperties, "Namespace")},
          BagKey{"basename", basename, basename, Through(kFrameProperties, "basename")},
          BagKey{"display-basename", "", "", Through(kFrameProperties, "DisplayBasename")}};
}

template <class T, std::size_t first, std::size_t second>
consteval std::array<T, first + second> Join(const std::array<T, first>& a, const T (&b)[second]) {
  std::array<T, first + second> joined{};
  std::ranges::copy(a, joined.begin());
  std::ranges::copy(b, joined.begin() + first);
  return joined;
}

}  // namespace property_table

// What every class begins with: the first three properties, and the first three keys. Only the
// default base name differs from class to class.
template <std::size_t own>
consteval std::array<PropertyRow, own + 3> FrameProperties(const PropertyRow (&ownRows)[own]) {
  return property_table::Join(property_table::kFrameProperties, ownRows);
}

template <std::size_t own>
consteval std::array<BagKey, own + 3> FrameKeys(std::string_view basename,
                                                const BagKey (&ownKeys)[own]) {
  return property_table::Join(property_table::FrameKeys(basename), ownKeys);
}

// For a class that adds nothing.
inline constexpr const auto& kFramePropertiesOnly = property_table::kFrameProperties;
consteval std::array<BagKey, 3> FrameKeys(std::string_view basename) {
  return property_table::FrameKeys(basename);
}

}  // namespace kvo
