// The changes that pages make by themselves, for tests that apply them without an edit.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/values/Object.h"
#include "tests/pages/FakeOffice.h"

namespace kvo {

// Makes the changes that applying a page makes to an untouched control, by assigning its
// properties. A page that is not listed writes nothing; a page that fails leaves the control
// unchanged.
class PageRules {
 public:
  PageRules(Object& control, const FakeOffice& office) : control_(control), office_(office) {}

  void Apply(std::string_view page) {
    if (page == "propPrintGeneral") Same({"Value"});
    if (page == "propGeneralFormat") Same({"Format"});
    if (page == "propContactGeneral") Field(office_.contactFields);
    if (page == "propOrderGeneral") Field(office_.orderFields);
    if (page == "propElementProperties") Element();
    if (page == "propGeneralAttributes") Attributes();
    if (page == "propIfGeneral") If();
    if (page == "propProdListGeneral") ProductList();
    if (page == "propProdListDesign") {
      Same({"FontFamily", "FontSize", "Border", "TableBgColor", "HeaderBgColor", "HeaderCSSStyle"});
      // A stored text that equals a choice's caption counts as that choice.
      if (Text("Border") == "5 Pixel") Set("Border", 5);
      if (Text("FontSize") == "12 Punkte") Set("FontSize", "12pt");
    }
    if (page == "propProdListPicker") Same({"SelectedProducts"});
    if (page == "propPosListDesign") PositionList();
    if (page == "propClickGeneral") Same({"Href", "ClickId", "HTMLContent"});
    if (page == "propUnsubGeneral") {
      Same({"Recipient", "HTMLContent"});
      Set("Site", Text("Site").ends_with('/') ? Text("Site") : Text("Site") + "/");
    }
  }

 private:
  std::string Text(std::string_view name) { return ToText(control_.Get(name)); }
  bool Flag(std::string_view name) { return ToFlag(control_.Get(name)); }
  void Set(std::string_view name, Variant value) { control_.Let(name, std::move(value)); }
  // Writes values back as read. This encodes content again, which drops anything that no token
  // represents, such as a CDATA marker.
  void Same(std::initializer_list<std::string_view> names) {
    for (const std::string_view name : names) Set(name, control_.Get(name));
  }

  void Field(const std::vector<FakeField>& fields) {
    for (const FakeField& field : fields)
      if (field.sqlName == Text("Field")) return Set("DisplayValue", field.displayName);
  }
  void Element() {
    const bool opening = Flag("OpeningTagOnly");
    const bool closing = Flag("ClosingTagOnly");
    Same({"Value"});
    Set("HTMLContent", opening || closing ? "" : Text("HTMLContent"));
    Set("ClosingTagOnly", closing && !opening);
  }
  void Attributes() {
    const auto kept = std::make_shared<Collection>();
    bool broken = false;
    ForEach(*ToObject(control_.Get("AttributesCollection")), [&](const Variant& element) {
      const std::string item = ToText(element);
      if (item.empty()) return;
      const auto bar = item.find('|');
      broken = broken || bar == std::string::npos;
      // A second bar ends the value.
      kept->Add(item.substr(0, item.find('|', broken ? 0 : bar + 1)));
    });
    if (!broken) Set("AttributesCollection", ObjectRef(kept));
  }
  void If() {
    std::string test = Text("Test");
    if (test.starts_with('%')) test.erase(0, 1);
    if (test.ends_with('%')) test.pop_back();
    Set("Test", "%" + test + "%");
    for (const char* name : {"OnTrue", "OnFalse"}) {
      std::string text = Text(name);
      while (text.starts_with(' ')) text.erase(0, 1);
      while (text.ends_with(' ')) text.pop_back();
      Set(name, text);
    }
    Same({"DisplayValue"});
  }
  void ProductList() {
    const std::string thumb = Text("DisplayThumb");
    const bool known = thumb == "no" || thumb == "right" || thumb == "top" || thumb == "bottom";
    if (!known) Set("DisplayThumb", "left");
    if (Text("DefaultExtension").empty()) Set("DefaultExtension", "htm");
  }
  void PositionList() {
    // A page that has not shown another control has no previous value to write.
    for (const char* name : {"TableBorder", "TableCellSpacing", "TableCellPadding"}) {
      bool choice = false;
      for (int n = 0; n <= 10; ++n) choice = choice || Text(name) == std::to_string(n);
      if (!choice) Set(name, "");
    }
    Same({"TableBackground", "HeaderBackground", "HeaderCSSStyle"});
  }

  Object& control_;
  const FakeOffice& office_;
};

}  // namespace kvo
