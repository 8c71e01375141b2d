#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/PropertyFrame.h"
#include "host/qt/FormView.h"

class QLabel;
class QPushButton;
class QTabWidget;

namespace kvo {

// The property frame's window: the pages as tabs, with OK, Cancel and Apply. Applies every page
// that the user touched, even if it does not mark itself changed. Stays open while a page's event
// runs.
class PropertyFrameDialog final : public QDialog, private PropertyFrame::Window {
 public:
  // Shows the first page. Throws what PropertyFrame's constructor throws.
  PropertyFrameDialog(std::string_view caption, std::vector<ObjectRef> objects,
                      const std::vector<std::string>& pages, const PageFactory& factory,
                      QWidget* parent);
  ~PropertyFrameDialog() override;

  PropertyFrame& Frame() { return frame_; }
  // The view of a page that was shown.
  FormView& View(std::size_t tab) { return *views_[tab]; }

  // Sets the note below the pages; empty for none.
  void Note(const QString& note);

  // Called after OK or Apply has applied pages, even if a later page failed.
  std::function<void()> onApplied;

  void accept() override;
  void reject() override;

 private:
  // PropertyFrame::Window
  void ApplyEnabledChanged() override;
  void ShowError(PropertyPage& page, const std::exception& error) override;
  void Closed() override;

  QWidget* MakeButtons();
  void ShowTab(int tab);
  void ApplyThen(bool close);
  bool IsBusy() const;

  PropertyFrame frame_;
  DialogCode result_ = Rejected;
  QTabWidget* tabs_;
  QLabel* note_;
  std::vector<FormView*> views_;  // nullptr until their pages are shown
  QPushButton* apply_;
};

}  // namespace kvo
