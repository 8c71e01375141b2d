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

// The property frame's window: the pages as tabs over OK, cancel and apply. Whatever the user
// touched is applied, also in pages that do not mark themselves. It does not close while a page's
// event is on its way.
class PropertyFrameDialog final : public QDialog, private PropertyFrame::Window {
 public:
  // The first page shows. Throws what PropertyFrame's constructor throws.
  PropertyFrameDialog(std::string_view caption, std::vector<ObjectRef> objects,
                      const std::vector<std::string>& pages, const PageFactory& factory,
                      QWidget* parent);
  ~PropertyFrameDialog() override;

  PropertyFrame& Frame() { return frame_; }
  // Of a page that was shown.
  FormView& View(std::size_t tab) { return *views_[tab]; }

  // A remark under the pages; empty: none.
  void Note(const QString& note);

  // After pages were applied with success, by OK or apply; also of some, before one that failed.
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
