#include "tests/windows/com/ScriptPlayer.h"

#include <commctrl.h>

#include <algorithm>

#include "common/forms/FormKeys.h"
#include "host/script/FormUser.h"
#include "host/script/ScriptWords.h"
#include "host/win32/Twips.h"
#include "host/win32/WindowText.h"
#include "pages/frmExpressionBuilder.h"
#include "tests/windows/Callback.h"
#include "tests/windows/win32/WindowActions.h"

namespace kvo::com {
namespace {

constexpr int kTick = 15;       // milliseconds
constexpr int kPatience = 400;  // ticks to wait for a dialog
constexpr int kApply = 0x3021;
const wchar_t* const kFormClass = L"KVOPDesignObjects.Window";

template <class Visit>
void ForEachInside(HWND window, Visit visit) {
  EnumChildWindows(window, Callback([](HWND inside, LPARAM data) -> BOOL {
                     return (*reinterpret_cast<Visit*>(data))(inside);
                   }),
                   reinterpret_cast<LPARAM>(&visit));
}

// Returns the component's outermost visible window inside another window.
HWND FormIn(HWND window) {
  HWND form = nullptr;
  ForEachInside(window, [&](HWND inside) {
    if (ClassOf(inside) != kFormClass || !IsWindowVisible(inside)) return TRUE;
    form = inside;
    return FALSE;
  });
  return form;
}

POINT PlaceOf(const FormControl& control) {
  POINT at{ToPixels(control.At().left), ToPixels(control.At().top)};
  for (FormControl* around = control.Parent().AsControl(); around != nullptr;
       around = around->Parent().AsControl()) {
    at.x += ToPixels(around->At().left);
    at.y += ToPixels(around->At().top);
  }
  return at;
}

HWND EditOf(HWND window) {
  if (Is(window, WC_EDITW)) return window;
  return FindWindowExW(window, nullptr, WC_EDITW, nullptr);
}

void TypeInto(HWND edit, std::string_view text) {
  for (const std::string_view stroke : SplitStrokes(text))
    for (const wchar_t unit : ToWide(stroke == kEnterStroke ? "\r" : stroke))
      SendMessageW(edit, WM_CHAR, unit, 1);
}

// Boxes show substitutes for line breaks and the like, so only plain texts are compared.
bool IsPlain(std::string_view text) { return text.find_first_of("\r\n\t") == text.npos; }

}  // namespace

ScriptPlayer* ScriptPlayer::playing_ = nullptr;

ScriptPlayer::ScriptPlayer(std::string_view script) {
  std::size_t number = 0;
  for (std::size_t at = 0; at <= script.size();) {
    const std::size_t end = std::min(script.find('\n', at), script.size());
    Words words = SplitWords(script.substr(at, end - at));
    ++number;
    if (!words.empty()) lines_.push_back({number, std::move(words)});
    at = end + 1;
  }
  CLSID recordset{};
  EXPECT_EQ(CLSIDFromProgID(L"ADODB.Recordset", &recordset), S_OK);
  EXPECT_EQ(CoRegisterClassObject(recordset, &recordsets_, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                  &recordsetsCookie_),
            S_OK);
  officeOutside_ = ToDispatch(furnishing_.office);
  for (const RegisteredPage& page : RegisteredPages()) {
    pageFactories_.push_back(std::make_unique<Pages>(page.name, madePages_));
    EXPECT_EQ(CoRegisterClassObject(ToGuid(page.classId), pageFactories_.back().get(),
                                    CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                    &pageCookies_.emplace_back()),
              S_OK);
  }
  playing_ = this;
}

ScriptPlayer::~ScriptPlayer() {
  for (const DWORD cookie : pageCookies_) CoRevokeClassObject(cookie);
  CoRevokeClassObject(recordsetsCookie_);
  playing_ = nullptr;
}

HRESULT ScriptPlayer::Recordsets::CreateInstance(IUnknown*, REFIID iid, void** object) noexcept {
  return ToDispatch(std::make_shared<FakeRecordset>(table_))->QueryInterface(iid, object);
}

void ScriptPlayer::Fail(const std::string& what) {
  const std::size_t number = at_ > 0 ? lines_[at_ - 1].number : 0;
  performance_.failures.push_back("line " + std::to_string(number) + ": " + what);
}

void ScriptPlayer::EndAt(const std::string& command) {
  if (performance_.endedAt.empty()) performance_.endedAt = command;
}

HRESULT ScriptPlayer::Pages::CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept {
  const HRESULT code = real_->CreateInstance(outer, iid, object);
  if (SUCCEEDED(code))
    made_.push_back(Pointer<IPropertyPage>::Query(static_cast<IUnknown*>(*object)));
  return code;
}

bool ScriptPlayer::ApplyPages() {
  for (const auto& page : madePages_)
    if (page->IsPageDirty() == S_OK && FAILED(page->Apply())) return false;
  return true;
}

void ScriptPlayer::FillShadow() {
  try {
    if (auto* page = dynamic_cast<PropertyPage*>(Front()))
      page->Select({Late(controls_[open_].get())});
  } catch (const std::exception&) {
    // The visible page has failed in the same way.
  }
}

Performance ScriptPlayer::Play() {
  while (const Line* line = Next()) {
    if (!performance_.endedAt.empty() || !performance_.failures.empty()) break;
    ++at_;
    Prepare(line->words);
  }
  controls_.clear();
  performance_.opened = furnishing_.table.opened;
  performance_.connection = furnishing_.connection;
  return std::move(performance_);
}

void ScriptPlayer::Prepare(const Words& words) {
  const std::string& what = words[0];
  if (what != "bag") LoadPending();
  if (what == "control") {
    pending_ = words[1];
    classes_[pending_] = words[2];
    controls_[pending_] = Dll::Get().Make<IPersistPropertyBag>(words[2]);
    pendingBag_.entries.clear();
  } else if (what == "bag") {
    pendingBag_.entries.emplace_back(words[1], words[2]);
  } else if (what == "open" && words.size() == 2) {
    ShowFrame(words[1]);
  } else if (what == "reopen") {
    ShowFrame(open_);
  } else if (!(what == "expect" && ExpectOutside(words)) && !furnishing_.Command(words)) {
    EndAt(what);
  }
}

void ScriptPlayer::LoadPending() {
  if (pending_.empty()) return;
  const auto& control = controls_[pending_];
  EXPECT_EQ(control->Load(&pendingBag_, nullptr), S_OK);
  if (FindControlByName(classes_[pending_])->contract().FindProperty("Office") != nullptr)
    Late(control.get())->Let("Office", ObjectRef(furnishing_.office));
  pending_.clear();
}

// --- the frame ---

void ScriptPlayer::ShowFrame(const std::string& name) {
  open_ = name;
  const ControlClass& contract = FindControlByName(classes_[name])->contract();
  page_ = contract.pages[0];
  std::vector<CLSID> pages;
  for (const std::string_view page : contract.pages) pages.push_back(PageClassId(page));
  IUnknown* object = controls_[name].get();
  frame_ = nullptr;
  waited_ = 0;
  forms_.clear();
  FillShadow();
  byMouse_ = entered_ = false;
  ++performance_.frames;
  timer_ = SetTimer(nullptr, 0, kTick, Tick);
  const HRESULT code =
      OleCreatePropertyFrame(nullptr, 0, 0, L"Rahmen", 1, &object, static_cast<ULONG>(pages.size()),
                             pages.data(), 0, 0, nullptr);
  KillTimer(nullptr, timer_);
  madePages_.clear();
  if (FAILED(code)) Fail("the frame did not open");
}

void CALLBACK ScriptPlayer::Tick(HWND, UINT, UINT_PTR, DWORD) {
  if (playing_ != nullptr) playing_->Step();
}

// Creates the forms here as well, to find out where their controls are.
Form* ScriptPlayer::Front() {
  const bool builder = TextOf(GetActiveWindow()) == L"Ausdruck-Assistent";
  const std::string name = builder ? "frmExpressionBuilder" : page_;
  auto& form = forms_[name];
  if (!form && builder) form = std::make_unique<frmExpressionBuilder>();
  if (!form) form = CreatePage(name);
  return form.get();
}

HWND ScriptPlayer::FormInFront() const { return FormIn(GetActiveWindow()); }

HWND ScriptPlayer::Find(const std::string& name) {
  const FormControl* control = Front()->Find(name);
  const HWND form = FormInFront();
  if (control == nullptr || form == nullptr) return nullptr;
  const POINT wanted = PlaceOf(*control);
  const int width =
      ToPixels(control->At().left + control->At().width) - ToPixels(control->At().left);
  HWND found = nullptr;
  ForEachInside(form, [&](HWND inside) {
    RECT at{};
    GetWindowRect(inside, &at);
    MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&at), 2);
    const auto near_ = [](LONG a, LONG b) { return a - b >= -1 && a - b <= 1; };
    if (!near_(at.left, wanted.x) || !near_(at.top, wanted.y) ||
        !near_(at.right - at.left, width) || !IsWindowVisible(inside))
      return TRUE;
    found = inside;
    return FALSE;
  });
  return found;
}

void ScriptPlayer::Step() {
  const HWND active = GetActiveWindow();
  if (active == nullptr) return;
  if (frame_ == nullptr) {
    if (TextOf(active).find(L"Rahmen") == std::wstring::npos || FormIn(active) == nullptr) {
      if (++waited_ > kPatience) Fail("the frame did not open");
      return;
    }
    frame_ = active;
    waited_ = 0;
    settled_ = 0;
  }
  // The frame gets the focus first, and passes it on.
  constexpr int kSettled = 5;
  if (++settled_ < kSettled) return;
  const bool over =
      !performance_.endedAt.empty() || !performance_.failures.empty() || Next() == nullptr;
  if (active != frame_ && TextOf(active) != L"Ausdruck-Assistent") {
    if (!AnswerDialog(active)) Fail("an unexpected dialog: " + FromWide(TextOf(active)));
    return;
  }
  if (over) {
    PostMessageW(GetDlgItem(active, IDCANCEL) != nullptr ? GetDlgItem(active, IDCANCEL) : active,
                 GetDlgItem(active, IDCANCEL) != nullptr ? BM_CLICK : WM_CLOSE, 0, 0);
    return;
  }
  const std::string& what = Next()->words[0];
  if (what == "open" || what == "reopen" || what == "control") {
    SendMessageW(GetDlgItem(frame_, IDCANCEL), BM_CLICK, 0, 0);
    return;
  }
  if (what == "focus" && !TabTo(Next()->words[1])) return;
  const Words words = lines_[at_++].words;
  try {
    Act(words);
  } catch (const CannotDo& error) {
    Fail(error.what());
  }
}

// Answers message boxes, the input prompt and the colour dialog.
bool ScriptPlayer::AnswerDialog(HWND dialog) {
  if (GetDlgItem(dialog, 706) != nullptr) {  // the red part of the system's colour dialog
    if (colors_.empty()) return false;
    const auto color = colors_.front();
    colors_.erase(colors_.begin());
    if (color)
      for (int part = 0; part < 3; ++part)
        SetDlgItemInt(dialog, 706 + part,
                      static_cast<UINT>(std::stoi(
                          color->substr(1 + 2 * static_cast<std::size_t>(part), 2), nullptr, 16)),
                      FALSE);
    SendMessageW(GetDlgItem(dialog, color ? IDOK : IDCANCEL), BM_CLICK, 0, 0);
    return true;
  }
  if (const HWND form = FormIn(dialog)) {  // the prompt
    if (answers_.empty()) return false;
    const auto answer = answers_.front();
    answers_.erase(answers_.begin());
    const HWND line = FindWindowExW(form, nullptr, WC_EDITW, nullptr);
    if (answer) TypeInto(line, *answer);
    PostMessageW(line, WM_KEYDOWN, answer ? VK_RETURN : VK_ESCAPE, 1);
    return true;
  }
  std::string text;
  for (HWND label = nullptr;
       (label = FindWindowExW(dialog, label, WC_STATICW, nullptr)) != nullptr;)
    text += FromWide(TextOf(label));
  performance_.messages.push_back(text);
  SendMessageW(FindWindowExW(dialog, nullptr, WC_BUTTONW, nullptr), BM_CLICK, 0, 0);
  return std::exchange(failing_, std::nullopt).has_value();
}

// --- what the user does ---

PropertyGrid* ScriptPlayer::GridOf(const std::string& name) {
  return dynamic_cast<PropertyGrid*>(Front()->Find(name));
}

// Finds the row in a separate page of the test, filled from the same control.
int ScriptPlayer::RowNumber(HWND, const std::string& name, const std::string& row) {
  PropertyGrid* grid = GridOf(name);
  if (grid == nullptr) return -1;
  if (row.starts_with('#')) return std::stoi(row.substr(1));
  const auto& items = grid->Items();
  for (std::size_t at = 0; at < items.size(); ++at)
    if (items[at]->Key() == row || items[at]->Caption() == row) return static_cast<int>(at);
  return -1;
}

void ScriptPlayer::ClickRow(const std::string& name, const std::string& row) {
  const HWND grid = Find(name);
  if (grid == nullptr) return Fail(name + " does not show");
  const int number = RowNumber(grid, name, row);
  if (number < 0) return Fail(name + " has no row " + row);
  ClickItem(grid, *GridOf(name), number);
}

void ScriptPlayer::Choose(HWND list, const std::string& text) {
  const int row = FindInList(list, text);
  if (row < 0) return Fail("the list has no row " + text);
  ChooseInList(list, row);
}

// Passes the key to the page first, as Windows' frame does and Wine's does not.
void ScriptPlayer::Key(WPARAM key) {
  const HWND focused = GetFocus();
  MSG message{focused, WM_KEYDOWN, key, 1, 0, {}};
  if (GetActiveWindow() == frame_) {
    if (PageInFront()->TranslateAccelerator(&message) == S_OK) return;
    // The frame's own buttons follow the last input.
    if (key == VK_TAB) return void(SetFocus(GetDlgItem(frame_, IDOK)));
  }
  PostMessageW(focused, WM_KEYDOWN, key, 1);
}

IPropertyPage* ScriptPlayer::PageInFront() {
  const auto pages = FindControlByName(classes_[open_])->contract().pages;
  const auto tab = static_cast<std::size_t>(std::ranges::find(pages, page_) - pages.begin());
  return madePages_[tab].get();
}

// Presses Tab until the control has the focus; returns true once it has.
bool ScriptPlayer::TabTo(const std::string& name) {
  constexpr int kMostTabs = 60;
  const HWND wanted = Find(name);
  const HWND focused = GetFocus();
  const bool there = wanted == nullptr || wanted == focused || IsChild(wanted, focused);
  if ((there && !byMouse_) || ++tabs_ > kMostTabs) {
    if (tabs_ > kMostTabs) Fail(name + " cannot be reached with the tab key");
    tabs_ = 0;
    return true;
  }
  byMouse_ = false;
  EnterForm() ? void() : Key(VK_TAB);
  return false;
}

// Moves the focus into the form. Returns false if it is already there.
bool ScriptPlayer::EnterForm() {
  if (GetActiveWindow() != frame_ || IsChild(FormInFront(), GetFocus())) return false;
  const auto page = Pointer<IPropertyPage2>::Query(PageInFront());
  EXPECT_EQ(page->EditProperty(DISPID_UNKNOWN), S_OK);
  return true;
}

// Tracks rows that the page has and the control does not have yet, for RowNumber().
void ScriptPlayer::Shadow(const std::string& button) {
  const auto remove = [this](const char* name) {
    PropertyGrid* grid = GridOf(name);
    const PropertyGridItem* item = grid == nullptr ? nullptr : grid->Find(row_);
    if (item != nullptr) grid->Remove(*item);
  };
  if (button == "cmdNew" && !answers_.empty() && answers_.front()) {
    GridOf("suiAttributes")->Add({.caption = *answers_.front(), .key = *answers_.front()});
  } else if (button == "cmdDelete") {
    remove("suiAttributes");
    remove("suiPickedProducts");
    row_.clear();
  } else if (button == "cmdAddProduct") {
    for (const std::size_t row : gridRows_) {
      const std::string key = "pprod_" + ToText(furnishing_.table.rows[row].at("ProductNo"));
      PropertyGrid* grid = GridOf("suiPickedProducts");
      if (grid->Find(key) == nullptr) grid->Add({.kind = ItemKind::entry, .key = key});
    }
  }
}

void ScriptPlayer::Act(const Words& words) {
  const std::string& what = words[0];
  byMouse_ = byMouse_ || what == "click" || what == "choose" || what == "row" || what == "caret";
  const auto window = [&]() -> HWND {
    const HWND found = words.size() > 1 ? Find(words[1]) : nullptr;
    if (found == nullptr) Fail(what + ": " + (words.size() > 1 ? words[1] : "") + " does not show");
    return found;
  };
  if (what == "expect") return Expect(words);
  if (what == "apply" || what == "ok" || what == "cancel") {
    const int button = what == "apply" ? kApply : what == "ok" ? IDOK : IDCANCEL;
    if (what != "cancel" && !ApplyPages()) return;
    SendMessageW(GetDlgItem(frame_, button), BM_CLICK, 0, 0);
  } else if (what == "page") {
    const auto pages = FindControlByName(classes_[open_])->contract().pages;
    const auto tab = std::ranges::find(pages, words[1]) - pages.begin();
    page_ = words[1];
    FillShadow();
    SendMessageW(frame_, PSM_SETCURSEL, static_cast<WPARAM>(tab), 0);
  } else if (what == "focus") {
    window();  // TabTo() has already moved there
  } else if (what == "type") {
    const HWND focused = GetFocus();
    if (!Is(focused, WC_EDITW))
      return Fail("cannot type into " + FromWide(ClassOf(focused)) + " " +
                  FromWide(TextOf(focused)));
    TypeInto(focused, words[1]);
  } else if (what == "press") {
    for (std::size_t i = 1; i < words.size(); ++i) {
      const HWND focused = GetFocus();
      if (words[i] == "select-all") {
        SendMessageW(focused, EM_SETSEL, 0, -1);
      } else if (words[i] == "delete") {
        if (ClassOf(focused) == kFormClass) Shadow("cmdDelete");
        SendMessageW(focused, WM_KEYDOWN, VK_DELETE, 1);
      } else if (words[i] == "end") {
        SendMessageW(focused, WM_KEYDOWN, VK_END, 1);
      } else if (words[i] == "escape" && GetActiveWindow() != frame_) {
        PostMessageW(focused, WM_KEYDOWN, VK_ESCAPE, 1);
      } else if (words[i] == "tab") {
        if (!EnterForm() && std::exchange(entered_, true)) Key(VK_TAB);
      } else {
        EndAt("press " + words[i]);
      }
    }
  } else if (what == "click") {
    if (const HWND found = window()) {
      Shadow(words[1]);
      SetFocus(found);
      SendMessageW(found, BM_CLICK, 0, 0);
    }
  } else if (what == "choose" && words.size() == 3) {
    if (const HWND found = window()) Choose(found, words[2]);
  } else if (what == "choose") {
    ClickRow(words[1], words[2]);
    const HWND list = ChildOf(Find(words[1]), WC_COMBOBOXW);
    if (list == nullptr) return Fail(words[2] + " has no choices");
    Choose(list, words[3]);
  } else if (what == "row") {
    row_ = words[2];
    ClickRow(words[1], words[2]);
    if (const HWND edit = EditOf(Find(words[1]))) {
      SetFocus(edit);
      SendMessageW(edit, EM_SETSEL, 0, -1);
    }
  } else if (what == "button") {
    ClickRow(words[1], words[2]);
    const HWND button = FindWindowExW(Find(words[1]), nullptr, WC_BUTTONW, nullptr);
    if (button == nullptr) return Fail(words[2] + " has no button");
    SendMessageW(button, BM_CLICK, 0, 0);
  } else if (what == "tab") {
    if (const HWND tabs = window()) {
      const auto* control = dynamic_cast<TabControl*>(Front()->Find(words[1]));
      const auto& panels = control->Controls();
      const auto wanted = std::ranges::find_if(panels, [&](const FormControl* panel) {
        return dynamic_cast<const TabPanel*>(panel)->Caption() == words[2];
      });
      ClickTab(tabs, static_cast<std::size_t>(wanted - panels.begin()));
    }
  } else if (what == "caret") {
    if (const HWND found = window()) {
      SetFocus(found);
      const auto caret = static_cast<WPARAM>(std::stoul(words[2]));
      SendMessageW(EditOf(found), EM_SETSEL, caret, static_cast<LPARAM>(caret));
    }
  } else if (what == "rows") {
    if (const HWND list = window()) {
      gridRows_.clear();
      for (std::size_t i = 2; i < words.size(); ++i) {
        gridRows_.push_back(std::stoul(words[i]));
        ClickListRow(list, gridRows_.back(), i > 2, false);
      }
    }
  } else if (what == "double-click") {
    if (const HWND list = window()) {
      gridRows_ = {std::stoul(words[2])};
      Shadow("cmdAddProduct");
      ClickListRow(list, gridRows_[0], false, false);
      ClickListRow(list, gridRows_[0], false, true);
    }
  } else if (what == "answer" || what == "no-answer") {
    answers_.push_back(what == "answer" ? std::optional(words[1]) : std::nullopt);
  } else if (what == "color" || what == "no-color") {
    colors_.push_back(what == "color" ? std::optional(words[1]) : std::nullopt);
  } else if (what == "close-window" && GetActiveWindow() != frame_) {
    PostMessageW(GetActiveWindow(), WM_CLOSE, 0, 0);
  } else if (what == "fails") {
    failing_ = words[1];
    Act({words.begin() + 2, words.end()});
  } else {
    EndAt(what);
  }
}

// --- expectations ---

bool ScriptPlayer::ExpectOutside(const Words& words) {
  if (words[1] == "bag") {
    TestBag bag;
    EXPECT_EQ(controls_[words[2]]->Save(&bag, FALSE, FALSE), S_OK);
    std::optional<std::string> stored;
    for (const auto& [key, value] : bag.entries)
      if (key == words[3]) stored = value;
    const auto expected = words.size() > 4 ? std::optional(words[4]) : std::nullopt;
    ++performance_.checkedBags;
    if (stored != expected)
      Fail("the bag holds \"" + stored.value_or("nothing") + "\" under " + words[3]);
    return true;
  }
  if (words[1] == "runtime") {
    ++performance_.checkedBags;
    const std::string text = RuntimeText(controls_[words[2]].get());
    if (text != words[3]) Fail("the runtime text is " + text);
    return true;
  }
  return words[1] == "page" || words[1] == "frame" || words[1] == "prompt" ||
         words[1] == "preset" || words[1] == "focus";
}

void ScriptPlayer::Expect(const Words& words) {
  if (ExpectOutside(words)) {
    if (words[1] == "page" && words[2] == "changed") {
      ++performance_.checkedInputs;
      const bool dirty = PageInFront()->IsPageDirty() == S_OK;
      if (dirty != (words[3] == "yes")) Fail("the page's state differs");
    }
    return;
  }
  const HWND found = words[1].find('/') == std::string::npos ? Find(words[1]) : nullptr;
  if (found == nullptr) return performance_.leftOut.push_back("expect " + words[1]);
  const std::string& what = words[2];
  std::optional<std::string> shown;
  if (what == "text" && IsPlain(words[3])) shown = FromWide(TextOf(found));
  if (what == "caption") shown = FromWide(TextOf(found));
  if (what == "enabled") shown = IsWindowEnabled(found) ? "yes" : "no";
  if (what == "checked")
    shown = SendMessageW(found, BM_GETCHECK, 0, 0) == BST_CHECKED ? "yes" : "no";
  if (what == "choice") shown = std::to_string(SendMessageW(found, CB_GETCURSEL, 0, 0));
  if (!shown) return performance_.leftOut.push_back("expect " + words[1] + " " + what);
  ++performance_.checkedInputs;
  if (*shown != words[3]) Fail(words[1] + " shows \"" + *shown + "\"");
}

}  // namespace kvo::com
