#pragma once

#include <string>
#include <string_view>

#include "common/forms/FormControl.h"
#include "common/forms/FormControls.h"

namespace kvo {

struct Size {
  int width;
  int height;
};

// A page or dialog. A dialog is shown with ShowModal and closed with Unload.
class Form : public Container {
 public:
  ~Form() override = default;

  std::string_view Caption() const { return caption_; }
  const Size& FormSize() const { return size_; }

  // Shows the form as a modal dialog; returns when it was unloaded.
  void ShowModal();
  // Closes the dialog. Its controls keep their content.
  void Unload();
  bool IsLoaded() const { return loaded_; }

  // The control with the keyboard focus; nullptr when none has it.
  FormControl* Focused() const { return focused_; }

  // Finds a control by its name anywhere on the form; `index` selects among several of one name.
  // nullptr when there is none.
  FormControl* Find(std::string_view name, std::size_t index = 0) const;
  // All controls, each container directly followed by its own controls.
  std::vector<FormControl*> AllControls() const;

  Form& OwnerForm() override { return *this; }

 protected:
  // `caption` must outlive the form.
  Form(std::string_view caption, Size size) : caption_(caption), size_(size) {}

 private:
  friend class FormControl;
  friend class FormRenderer;

  // The user typed, chose, clicked or deleted something in a control. Called before the event.
  virtual void Touched() {}
  // The user closes the window with its close button.
  virtual void Closing() { Unload(); }

  std::string_view caption_;
  Size size_;
  bool loaded_ = false;
  FormControl* focused_ = nullptr;
  FormRenderer* renderer_ = nullptr;
};

}  // namespace kvo
