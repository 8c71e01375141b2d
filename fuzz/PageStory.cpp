#include "fuzz/PageStory.h"

#include <algorithm>
#include <stdexcept>

#include "common/frame/Office.h"
#include "common/values/RuntimeError.h"
#include "fuzz/StoryBag.h"
#include "fuzz/UserEvents.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

constexpr int kMostEvents = 300;

}  // namespace

GuidText PageStory::StoryPlatform::NewGuid() {
  GuidText guid{};
  const std::string zeros = "{00000000-0000-4000-8000-000000000000}";
  const std::string number = std::to_string(++made_);
  std::string text = zeros.substr(0, zeros.size() - 1 - number.size()) + number + '}';
  std::ranges::copy(text, guid.characters.begin());
  return guid;
}

PageStory::PageStory(std::string_view bytes) : story_(bytes) {
  for (const char* name : {"EMAIL", "a&b", "EMAIL", ""}) {
    office_->contactFields.push_back({name, "Name von " + std::string(name), 0});
    office_->orderFields.push_back({name, "Bestellung " + std::string(name), 1});
  }
  for (std::int32_t type = 0; type <= 7; ++type)
    office_->contactFields.push_back({"F" + std::to_string(type), "Feld", type});
  table_.rows = {{{"ProductNo", "100"}, {"Desc1", "Tee"}, {"Desc2", "grün"}},
                 {{"ProductNo", "2,0"}, {"Desc1", Variant()}, {"Desc2", ""}},
                 {{"ProductNo", Variant()}, {"Desc1", "ohne"}, {"Desc2", ""}},
                 {{"ProductNo", "300"}, {"Desc1", "Kanne"}, {"Desc2", "Ton"}}};
  office_->connection = connection_;
  platform_.recordsets = [this] { return std::make_shared<FakeRecordset>(table_); };
  platform_.whileModal = [this](Form& form) { PlayDialog(form); };
}

void PageStory::Play() {
  if (!LoadControl()) return;
  Loaded();
  PropertyFrame::Window& window = *this;
  const std::vector<ObjectRef> objects = {control_};
  frame_ = std::make_unique<PropertyFrame>(window, objects, pages_, CreatePage);
  if (frame_->PageCount() == 0) return;
  users_.resize(frame_->PageCount());
  UserOfShownPage();
  frame_->Show(0);
  Opened();
  while (!Over()) {
    const char event = story_.OneOf("fitkcordsbvxmAPSGCNF");
    PlayEvent(event);
    Performed(event);
  }
  users_.clear();
  frame_->Cancel();
  Cancelled();
}

void PageStory::ShowError(PropertyPage&, const std::exception& error) {
  ++errors_;
  Threw(error);
}

bool PageStory::LoadControl() {
  const ControlClass& contract = ReadClass(story_);
  const auto all = RegisteredPages();
  if (const std::size_t page = story_.Below(all.size() + 1); page == 0)
    pages_.assign(contract.pages.begin(), contract.pages.end());
  else
    pages_ = {std::string(all[page - 1].name)};
  story_.Skip('\n');
  StoryBag bag(story_, contract);
  control_ = contract.create();
  try {
    control_->ReadProperties(bag);
  } catch (const RuntimeError&) {
    return false;
  }
  GiveOffice(*control_, office_);
  return true;
}

bool PageStory::Over() { return story_.AtEnd() || ++events_ > kMostEvents; }

FormUser& PageStory::UserOfShownPage() {
  std::unique_ptr<FormUser>& user = users_[frame_->ShownTab()];
  if (user == nullptr) user = MakeUser(frame_->Page(frame_->ShownTab()));
  return *user;
}

ColorNumber PageStory::ReadColor() {
  ColorNumber color = 0;
  for (int part = 0; part < 3; ++part)
    color = color * 256 + static_cast<ColorNumber>(story_.Below(256));
  return color;
}

void PageStory::Act(char event, Form& form, FormUser& user) {
  std::string outcome = "fails";
  try {
    outcome = PerformEvent(event, form, user, story_);
  } catch (const std::logic_error&) {
    throw;  // a broken rule
  } catch (const std::exception& error) {
    Threw(error);
  }
  Acted(form, event, outcome);
}

void PageStory::PlayDialog(Form& form) {
  const auto user = MakeUser(form);
  while (form.IsLoaded() && !Over()) Act(story_.OneOf(kUserEvents), form, *user);
}

void PageStory::PlayEvent(char event) {
  switch (event) {
    case 'A':
      return Apply();
    case 'P':
      return frame_->Show(story_.Below(frame_->PageCount()));
    case 'S':
      return frame_->Select({control_});
    case 'G':
      table_.gone = !table_.gone;
      return;
    case 'C':
      connection_->state = 1 - connection_->state;
      return;
    case 'N':
      platform_.promptAnswers.emplace_back(story_.Text());
      return;
    case 'F':
      platform_.colorAnswers.emplace_back(ReadColor());
      return;
    default: {
      FormUser& user = UserOfShownPage();
      return Act(event, frame_->Page(frame_->ShownTab()), user);
    }
  }
}

}  // namespace kvo
