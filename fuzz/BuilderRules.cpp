#include "fuzz/BuilderRules.h"

#include <functional>
#include <memory>
#include <string>

#include "fuzz/Demand.h"
#include "fuzz/UserEvents.h"
#include "host/script/HeadlessUser.h"
#include "pages/frmExpressionBuilder.h"
#include "tests/pages/FakeOffice.h"

namespace kvo {
namespace {

constexpr int kMostBuilderEvents = 300;
constexpr std::int32_t kYesOrNo = 3;

// Returns an office with fields of every type, two with the same name, and one with special
// characters in its names.
std::shared_ptr<FakeOffice> OfficeWithAllTypes() {
  const auto office = std::make_shared<FakeOffice>();
  for (std::int32_t type = -1; type <= 8; ++type)
    office->contactFields.push_back(
        {"F" + std::to_string(type), "Feld " + std::to_string(type), type});
  office->contactFields.push_back({"F1", "noch einmal", kYesOrNo});
  office->contactFields.push_back({"'#\"&|", "<b>", 0});
  return office;
}

std::int32_t FirstTypeOf(const FakeOffice& office, const std::string& name) {
  for (const FakeField& field : office.contactFields)
    if (field.sqlName == name) return field.dataType;
  throw std::logic_error("a listed field is not in the office");
}

class BuilderConversation {
 public:
  explicit BuilderConversation(std::string_view bytes) : story_(bytes) {
    if (story_.OneOf("01") == '1') office_ = OfficeWithAllTypes();
    expression_ = story_.Text();
  }

  void Play() {
    frmExpressionBuilder form;
    Open(form, expression_);
    Show(form, [this, &form](HeadlessUser& user) { PlayEvents(form, user); });
    Demand(!form.IsLoaded(), "the dialog is still open");
    const std::string& result = form.Expression();
    if (form.CancelForm || !ended_)
      Demand(result == expression_, "a cancelled dialog changed the expression");
    else
      Demand(result == form.txtIfExpression.Text(), "\"Ok\" did not return the text of the box");

    // Opens the result again: "Ok" keeps it, and "Abbrechen" keeps it whatever was typed.
    Ends(form, form.cmdOk, form.txtIfExpression.Text());
    frmExpressionBuilder again;
    Open(again, form.Expression());
    Ends(again, again.cmdOk, form.Expression());
    Ends(again, again.cmdOk, form.Expression());
    const std::string kept = again.Expression();
    Show(again, [&again](HeadlessUser& user) {
      user.FocusByKeyboard(again.txtIfExpression);
      user.Type("x");
      user.Click(again.cmdCancel);
    });
    Demand(again.CancelForm, "\"Abbrechen\" did not cancel");
    Demand(again.Expression() == kept, "\"Abbrechen\" changed the expression");
  }

 private:
  void Open(frmExpressionBuilder& form, const std::string& expression) const {
    form.Office = office_;
    form.Expression(expression);
    form.Init();
    Demand(form.Expression() == expression, "opening changed the expression");
    Demand(form.txtIfExpression.Text() == expression, "the dialog shows another expression");
    DemandSound(form);
  }

  void Show(Form& form, const std::function<void(HeadlessUser&)>& act) {
    platform_.whileModal = [&](Form& shown) {
      HeadlessUser user(platform_, shown);
      act(user);
    };
    form.ShowModal();
  }

  void PlayEvents(frmExpressionBuilder& form, HeadlessUser& user) {
    for (int count = 0; count < kMostBuilderEvents && !story_.AtEnd() && form.IsLoaded(); ++count) {
      const char event = story_.OneOf(kUserEvents);
      PerformEvent(event, form, user, story_);
      DemandSound(form);
      if (form.IsLoaded()) {
        Demand(form.Expression() == expression_, "the expression changed before the dialog ended");
      } else if (event == 'w') {
        Demand(form.CancelForm, "closing the window did not cancel");
      }
    }
    ended_ = !form.IsLoaded();
  }

  void Ends(frmExpressionBuilder& form, CommandButton& button, const std::string& expected) {
    Show(form, [&button](HeadlessUser& user) { user.Click(button); });
    Demand(!form.CancelForm, "\"Ok\" cancelled");
    Demand(form.Expression() == expected, "a second \"Ok\" changed the expression");
  }

  // Demands a sound form and operators that fit the chosen field.
  void DemandSound(const frmExpressionBuilder& form) const {
    DemandSoundForm(form);
    const ComboBox::Row* field = form.cboFields.SelectedItem();
    if (field == nullptr) return;
    Demand(office_ != nullptr, "a field is listed without an office");
    const std::size_t operators = form.cboOperator.Rows().size();
    switch (FirstTypeOf(*office_, *field->key)) {
      case 0:
        Demand(operators == 2 && form.txtArgument.Enabled(), "wrong operators for a text field");
        return;
      case 1:
      case 6:
        Demand(operators == 4 && form.txtArgument.Enabled(),
               "wrong operators for an ordered field");
        return;
      case kYesOrNo:
        Demand(operators == 2 && !form.txtArgument.Enabled(), "wrong operators for a yes/no field");
        return;
      case 2:
      case 4:
      case 5:
        Demand(false, "a listed field cannot be compared");
        return;
      default:
        Demand(operators == 0, "an unknown type has operators");
    }
  }

  Bytes story_;
  HeadlessPlatform platform_;
  PlatformScope scope_{platform_};
  std::shared_ptr<FakeOffice> office_;
  std::string expression_;
  bool ended_ = false;  // by an event of the story
};

}  // namespace

void CheckBuilder(std::string_view story) { BuilderConversation(story).Play(); }

}  // namespace kvo
