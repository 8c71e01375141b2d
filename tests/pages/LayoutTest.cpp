// Page layout: nothing is cut off, nothing overlaps, and the tab order follows reading order.
// Checks every registered page and the dialog.
#include <gtest/gtest.h>

#include <memory>

#include "host/headless/HeadlessPlatform.h"
#include "host/headless/TextLines.h"
#include "host/registration/classes.h"
#include "pages/frmExpressionBuilder.h"
#include "tests/pages/PageTest.h"

namespace kvo {
namespace {

struct NamedForm {
  std::string name;
  std::unique_ptr<Form> form;
};

std::vector<NamedForm> AllForms() {
  std::vector<NamedForm> forms;
  for (const RegisteredPage& page : RegisteredPages())
    forms.push_back({std::string(page.name), page.create()});
  forms.push_back({"frmExpressionBuilder", std::make_unique<frmExpressionBuilder>()});
  return forms;
}

// Finds a control's caption, whether it wraps, and the width that the control needs besides it.
class CaptionRoom {
 public:
  std::string caption;
  int around = 0;
  bool wraps = false;

  void operator()(Label& label) {
    caption = label.Caption();
    wraps = label.Wraps();
  }
  void operator()(CheckBox& box) { Marked(box.Caption()); }
  void operator()(OptionButton& button) { Marked(button.Caption()); }
  void operator()(CommandButton& button) {
    caption = button.Caption();
    around = 120;
  }
  void operator()(TextBox&) {}
  void operator()(ComboBox&) {}
  void operator()(Frame&) {}
  void operator()(PictureBox&) {}
  void operator()(TabControl&) {}
  void operator()(TabPanel&) {}
  void operator()(PropertyGrid&) {}
  void operator()(Grid&) {}
  void operator()(Timer&) {}

 private:
  void Marked(std::string_view text) {
    caption = text;
    around = 300;  // the box or circle in front
  }
};

bool HasPlace(const FormControl& control) { return control.At().width > 0; }

// Deliberate: in some places a label's lowest pixel is under the box below it.
bool Overlap(const Rect& a, const Rect& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width &&
         a.top < b.top + b.height - kTwipsPerPixel && b.top < a.top + a.height - kTwipsPerPixel;
}

class Layout : public testing::Test {
 protected:
  HeadlessPlatform platform;
  PlatformScope scope{platform};
  std::vector<NamedForm> forms = AllForms();
};

TEST_F(Layout, ThereAreThirteenPages) { EXPECT_EQ(RegisteredPages().size(), 13U); }

TEST_F(Layout, EveryPageOfAClassIsRegistered) {
  for (const RegisteredControl& control : RegisteredControls())
    for (const std::string_view page : control.contract().pages)
      EXPECT_NE(FindPage(page), nullptr) << control.contract().name << " " << page;
}

TEST_F(Layout, EveryCaptionFits) {
  constexpr int kLineHeight = 195;
  for (const NamedForm& form : forms) {
    for (FormControl* control : form.form->AllControls()) {
      CaptionRoom room;
      WithKind(*control, room);
      if (room.caption.empty()) continue;
      SCOPED_TRACE(form.name + "." + std::string(control->Name()) + ": " + room.caption);
      const FontWeight weight = control->TextFont().weight;
      const int width = control->At().width - room.around;
      const auto lines = room.wraps ? TextLines(room.caption, weight, width)
                                    : std::vector<std::string>{room.caption};
      for (const std::string& line : lines) EXPECT_LE(TahomaTextWidth(line, weight), width);
      EXPECT_LE(static_cast<int>(lines.size()) * kLineHeight, control->At().height);
    }
  }
}

TEST_F(Layout, NothingLeavesItsContainer) {
  for (const NamedForm& form : forms) {
    for (FormControl* control : form.form->AllControls()) {
      if (!HasPlace(*control)) continue;
      SCOPED_TRACE(form.name + "." + std::string(control->Name()));
      FormControl* around = control->Parent().AsControl();
      const Size size =
          around ? Size{around->At().width, around->At().height} : form.form->FormSize();
      EXPECT_GE(control->At().left, 0);
      EXPECT_GE(control->At().top, 0);
      EXPECT_LE(control->At().left + control->At().width, size.width);
      EXPECT_LE(control->At().top + control->At().height, size.height);
    }
  }
}

TEST_F(Layout, NothingOverlapsItsNeighbours) {
  for (const NamedForm& form : forms) {
    const auto controls = form.form->AllControls();
    for (FormControl* a : controls) {
      for (FormControl* b : controls) {
        if (a == b || &a->Parent() != &b->Parent() || !HasPlace(*a) || !HasPlace(*b)) continue;
        if (dynamic_cast<TabPanel*>(a)) continue;  // panels cover each other
        EXPECT_FALSE(Overlap(a->At(), b->At()))
            << form.name << ": " << a->Name() << " and " << b->Name();
      }
    }
  }
}

TEST_F(Layout, TheTabOrderGoesFromTopToBottomAndFromLeftToRight) {
  for (const NamedForm& form : forms) {
    const FormControl* former = nullptr;
    for (FormControl* control : form.form->Controls()) {
      if (!control->TakesFocus()) continue;
      if (former != nullptr) {
        const Rect& a = former->At();
        const Rect& b = control->At();
        const bool below = b.top >= a.top + a.height;
        const bool beside = b.top < a.top + a.height && b.left >= a.left + a.width;
        EXPECT_TRUE(below || beside)
            << form.name << ": " << former->Name() << " then " << control->Name();
      }
      former = control;
    }
  }
}

TEST_F(Layout, PagesHaveTheUsualSizeAndFormsUseTahoma) {
  for (const NamedForm& form : forms) {
    if (dynamic_cast<PropertyPage*>(form.form.get())) {
      EXPECT_EQ(form.form->FormSize().width, 5775) << form.name;
      EXPECT_EQ(form.form->FormSize().height, 4560) << form.name;
    }
    for (FormControl* control : form.form->AllControls())
      if (!dynamic_cast<TextBox*>(control)) {
        EXPECT_EQ(control->TextFont().family, "Tahoma");
      }
  }
}

TEST_F(Layout, FormsUseTahomaAt8Point25AndMarkupUsesCourierNewAt9Point) {
  const std::vector<std::string> markup = {
      "propElementProperties.txtHTMLContent", "propIfGeneral.txtOnTrueContent",
      "propIfGeneral.txtOnFalseContent", "propClickGeneral.txtHTMLContent",
      "propUnsubGeneral.txtHTMLContent"};
  std::size_t found = 0;
  for (const NamedForm& form : forms) {
    for (FormControl* control : form.form->AllControls()) {
      const std::string name = form.name + "." + std::string(control->Name());
      SCOPED_TRACE(name);
      const bool isMarkup = std::count(std::begin(markup), std::end(markup), name) > 0;
      found += isMarkup ? 1 : 0;
      EXPECT_EQ(control->TextFont().family, isMarkup ? "Courier New" : "Tahoma");
      EXPECT_EQ(control->TextFont().points, isMarkup ? 9 : 8.25);
    }
  }
  EXPECT_EQ(found, markup.size());
}

TEST_F(Layout, ClassIdsOfPagesAreUniqueAndInRegistryForm) {
  std::vector<std::string_view> ids;
  for (const RegisteredPage& page : RegisteredPages()) ids.push_back(page.classId);
  for (const RegisteredControl& control : RegisteredControls()) ids.push_back(control.classId);
  for (const std::string_view id : ids) {
    EXPECT_EQ(id.size(), 38U);
    EXPECT_EQ(std::count(ids.begin(), ids.end(), id), 1) << id;
    EXPECT_EQ(id.find_first_not_of("{}-0123456789ABCDEF"), std::string_view::npos) << id;
  }
}

}  // namespace
}  // namespace kvo
