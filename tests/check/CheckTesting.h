// Shared by the tests of the checks.
#pragma once

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/values/Ascii.h"
#include "common/values/Recordset.h"
#include "document/check/Check.h"
#include "document/check/MailRules.h"
#include "document/check/Products.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/registration/classes.h"
#include "tests/forms/FakeRecordset.h"

namespace kvo::check {

// An office with one contact field and one order field.
class FieldObject : public Object {
 public:
  explicit FieldObject(std::string name) : name_(std::move(name)) {}
  Variant Get(std::string_view member) override {
    if (EqualIgnoringCase(member, "SQLName")) return name_;
    return Object::Get(member);
  }

 private:
  std::string name_;
};
struct Fields {
  std::vector<std::string> contact;
  std::vector<std::string> order;
};
class ShopOffice : public Object {
 public:
  explicit ShopOffice(Fields fields) : fields_(std::move(fields)) {}
  Variant Get(std::string_view member) override {
    if (EqualIgnoringCase(member, "ShopDBConnection"))
      return ObjectRef(std::make_shared<FakeConnection>());
    const bool contact = EqualIgnoringCase(member, "ContactFields");
    if (!contact && !EqualIgnoringCase(member, "OrderFields")) return Object::Get(member);
    const auto list = std::make_shared<Collection>();
    for (const std::string& name : contact ? fields_.contact : fields_.order)
      list->Add(ObjectRef(std::make_shared<FieldObject>(name)));
    return ObjectRef(list);
  }

 private:
  Fields fields_;
};

inline ObjectRef AnOffice() {
  return std::make_shared<ShopOffice>(Fields{.contact = {"Email"}, .order = {"OrderTotal"}});
}

inline page::Problems CheckText(const std::string& text, bool withOffice = true) {
  HeadlessPlatform platform;
  FakeTable table;
  table.rows = {{{"ProductNo", "K-1"}}};
  platform.recordsets = [&] { return std::make_shared<FakeRecordset>(table); };
  const PlatformScope scope(platform);
  const ObjectRef office = withOffice ? AnOffice() : nullptr;
  ShopProducts products(office);
  return CheckPage(page::Page(text), office, &products);
}

inline page::Problems CheckAsMail(const std::string& text, bool withOffice) {
  page::Problems problems = CheckText(text, withOffice);
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  std::ranges::move(CheckMail(page::Page(text)), std::back_inserter(problems));
  return problems;
}

inline bool Holds(const page::Problems& problems, std::string_view rule) {
  return std::ranges::find(problems, rule, &page::Problem::rule) != problems.end();
}

// Returns a control's element, with the matching print tag unless the first parameter gives
// another.
inline std::string Control(std::string_view className,
                           const std::vector<std::pair<std::string, std::string>>& params) {
  std::string text = "<object classid=\"progid:KVOPDesignObjects." + std::string(className) + "\">";
  const RegisteredControl* known = FindControlByName(className);
  if (known != nullptr && !known->contract().tagName.empty() &&
      (params.empty() || params.front().first != "basename"))
    text += "<param name=\"basename\" value=\"" + std::string(known->contract().tagName) + "\">";
  for (const auto& [key, value] : params)
    text += "<param name=\"" + key + "\" value=\"" + value + "\">";
  return text + "</object>";
}

// A rule's section of docs/checks.md.
struct Section {
  std::string rule;
  std::vector<std::string> examples;  // one that it reports, one that it does not
};

inline std::string Document() {
  std::ifstream file(KVO_SOURCE_DIR "/docs/checks.md", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline std::vector<Section> Sections() {
  std::vector<Section> sections;
  const std::string document = Document();
  for (std::size_t at = document.find("\n## "); at != std::string::npos;) {
    at += 4;
    const std::size_t next = document.find("\n## ", at);
    const std::string body = document.substr(at, next - at);
    Section section{body.substr(0, body.find('\n')), {}};
    constexpr std::string_view kFence = "```html\n";
    for (std::size_t begin = body.find(kFence); begin != std::string::npos;
         begin = body.find(kFence, begin)) {
      begin += kFence.size();
      section.examples.push_back(body.substr(begin, body.find("\n```", begin) - begin));
    }
    sections.push_back(std::move(section));
    at = next;
  }
  return sections;
}

}  // namespace kvo::check
