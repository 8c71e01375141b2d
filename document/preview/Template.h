// A page, read once, that shows many records: what its recipients would get. The engine that sends
// mails is another system; this is a picture of its work for authors, and says so.
//
// Takes the published bytes. Finds runtime tags wherever they stand in them: those that controls
// wrote by their control, and those that authors wrote by hand by the names that the toolbox gives
// tags. Texts from records are escaped for the place where they stand; where no text would be safe,
// as in a script, only plain words are let through.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "document/page/Page.h"
#include "document/preview/Record.h"

namespace kvo::preview {

// A part of the page that has two forms: a condition that holds or not, or a list that has entries
// or none.
struct Switch {
  enum class Kind { condition, products, positions };
  Kind kind = Kind::condition;
  std::string name;     // the author's description, else the test; empty for a list
  std::string control;  // class name; empty for a tag that was written by hand
  std::string id;
  std::size_t index = kNoControl;  // of the control
  page::Place place;               // in the page
  std::size_t parent = kNoSwitch;  // the switch around this one
  bool parentHolds = false;        // the form of the parent in which it stands
  std::size_t same = 0;            // the first switch with the same test, perhaps this one

  static constexpr std::size_t kNoControl = static_cast<std::size_t>(-1);
  static constexpr std::size_t kNoSwitch = static_cast<std::size_t>(-1);
};

// What a switch shows: as the record has it, or one of its forms.
enum class Choice { asRecord, holds, fails };

// Something that the preview cannot show as a recipient would see it.
struct Finding {
  // `missing` is a mistake or a gap that the author can mend; `outside` is what only the engine or
  // the shop knows: a script, a counter, a price.
  enum class Kind { missing, outside };
  Kind kind = Kind::missing;
  Message message;
  page::Place place;  // in the page
  std::size_t offset = 0;
  std::string control;  // class name; empty for a tag that was written by hand
  std::string id;
  std::size_t index = Switch::kNoControl;
};

struct Product {
  std::string number;
  std::string description;
  std::string description2;
};
// Looks up products by their numbers: one for each number, nothing for one that is not there. Says
// why when the shop cannot be asked; the numbers are then unknown, not missing.
struct Shop {
  virtual ~Shop() = default;
  virtual std::vector<std::optional<Product>> Find(const std::vector<std::string>& numbers,
                                                   std::optional<Message>& failure) = 0;
};

struct RenderOptions {
  Shop* shop = nullptr;                  // without one, products show their numbers
  std::vector<Choice> choices;           // by switch; those beyond the end are as the record has it
  Language language = Language::german;  // of the reasons in the page
  bool banner = false;                   // begins the page with kFace
  // Comments around what each control became: "<!--kvo 3-->...<!--/kvo-->" for the control 3.
  bool marks = false;
};

// What every preview says of itself.
inline constexpr Localized kFace{"Vorschau mit Beispieldaten", "Preview with sample data"};

struct Preview {
  std::string html;               // in the page's encoding
  std::vector<Finding> findings;  // in page order
  // By switch: whether it was shown, and which form.
  struct Shown {
    bool reached = false;
    bool held = false;
  };
  std::vector<Shown> switches;
};

class Template {
 public:
  // `office` tells a misspelt field from one that the record lacks; may be nullptr. Needs a
  // platform, as all that calls controls does.
  explicit Template(const page::Page& page, const ObjectRef& office = nullptr);
  ~Template();
  Template(Template&&) noexcept;
  Template& operator=(Template&&) noexcept;

  // In page order. A switch inside another one follows it.
  const std::vector<Switch>& Switches() const;
  // What keeps the page from being published; the preview shows such controls as missing.
  const page::Problems& Problems() const;

  Preview Render(const Record& record, const RenderOptions& options = {}) const;

  struct Compiled;

 private:
  std::unique_ptr<const Compiled> compiled_;
};

// The fewest renderings in which every switch shows both forms, as far as that is possible: the
// choices of each. A test that stands in the page twice has the same result everywhere.
std::vector<std::vector<Choice>> AllBranches(const std::vector<Switch>& switches);

}  // namespace kvo::preview
