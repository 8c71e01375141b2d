// Plays the page scripts of tests/pages/scripts in the system's own property frame. Runs the
// module's pages in OleCreatePropertyFrame, and types and clicks by sending messages to their
// windows.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/pages/Furnishing.h"
#include "tests/windows/com/Host.h"

namespace kvo::com {

struct Performance {
  std::vector<std::string> failures;  // with line numbers
  std::vector<std::string> leftOut;   // lines that can be checked only in a form itself
  std::string endedAt;                // the command where the script could not continue
  std::vector<std::string> messages;  // messages shown
  int checkedBags = 0;                // `expect bag` and `expect runtime`
  int checkedInputs = 0;              // texts, checks and states read from the windows
  int frames = 0;
  std::vector<FakeTable::Opened> opened;  // recordsets
  ObjectRef connection;                   // the office's connection to the shop
};

class ScriptPlayer {
 public:
  explicit ScriptPlayer(std::string_view script);
  ScriptPlayer(const ScriptPlayer&) = delete;
  ScriptPlayer& operator=(const ScriptPlayer&) = delete;
  ~ScriptPlayer();

  // Stops where the system's frame cannot follow the script, such as at a new selection.
  Performance Play();

 private:
  using Words = std::vector<std::string>;
  // Replaces ADO's recordsets, whose rows cannot be read under Wine.
  class Recordsets final : public OnStack<IClassFactory> {
   public:
    explicit Recordsets(FakeTable& table) : table_(table) {}
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                             void** object) noexcept override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

   private:
    FakeTable& table_;
  };
  // Creates the module's pages, and keeps those of the open frame.
  class Pages final : public OnStack<IClassFactory> {
   public:
    Pages(std::string_view name, std::vector<Pointer<IPropertyPage>>& made)
        : real_(Dll::Get().Factory(name)), made_(made) {}
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                             void** object) noexcept override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

   private:
    Pointer<IClassFactory> real_;
    std::vector<Pointer<IPropertyPage>>& made_;
  };
  struct Line {
    std::size_t number;
    Words words;
  };

  const Line* Next() const { return at_ < lines_.size() ? &lines_[at_] : nullptr; }
  void Fail(const std::string& what);
  void EndAt(const std::string& command);
  // Runs a command outside a frame.
  void Prepare(const Words& words);
  void LoadPending();
  void ShowFrame(const std::string& name);
  // Applies the changed pages in the order of their tabs, as Windows' frame does on OK or Apply and
  // Wine's does not. Returns false if one of them fails.
  bool ApplyPages();
  // Runs repeatedly while a frame is open, even in the loops of modal dialogs.
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);
  void Step();
  bool AnswerDialog(HWND dialog);
  void Act(const Words& words);
  void Expect(const Words& words);
  bool ExpectOutside(const Words& words);

  // The visible form and its window.
  Form* Front();
  HWND FormInFront() const;
  HWND Find(const std::string& name);
  PropertyGrid* GridOf(const std::string& name);
  void Key(WPARAM key);
  IPropertyPage* PageInFront();
  bool TabTo(const std::string& name);
  bool EnterForm();
  void FillShadow();
  void Shadow(const std::string& button);
  void Choose(HWND list, const std::string& text);
  void ClickRow(const std::string& grid, const std::string& row);
  int RowNumber(HWND grid, const std::string& name, const std::string& row);

  std::vector<Line> lines_;
  std::size_t at_ = 0;
  Performance performance_;
  std::map<std::string, Pointer<IPersistPropertyBag>> controls_;
  std::map<std::string, std::string> classes_;
  std::string pending_;
  TestBag pendingBag_;
  Furnishing furnishing_;
  Recordsets recordsets_{furnishing_.table};
  DWORD recordsetsCookie_ = 0;
  Pointer<IDispatch> officeOutside_;

  std::vector<Pointer<IPropertyPage>> madePages_;
  std::vector<std::unique_ptr<Pages>> pageFactories_;
  std::vector<DWORD> pageCookies_;

  std::string open_;  // the control whose pages are open
  std::string page_;  // the class of the visible page
  HWND frame_ = nullptr;
  int settled_ = 0;
  int waited_ = 0;
  int tabs_ = 0;
  bool byMouse_ = false;                // the last input was entered with the mouse
  bool entered_ = false;                // the form was entered with the tab key
  std::string row_;                     // the last row clicked
  std::vector<std::size_t> gridRows_;   // the rows selected in a data grid
  std::optional<std::string> failing_;  // `fails`: the expected part of the message
  std::vector<std::optional<std::string>> answers_;
  std::vector<std::optional<std::string>> colors_;
  std::map<std::string, std::unique_ptr<Form>> forms_;  // for the positions of their controls
  UINT_PTR timer_ = 0;
  static ScriptPlayer* playing_;
};

}  // namespace kvo::com
