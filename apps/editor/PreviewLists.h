// The lists beside a preview: its switches with what they show, and what it cannot show.
#pragma once

#include <QAbstractTableModel>
#include <QTreeView>
#include <functional>

#include "apps/editor/PreviewWork.h"

namespace kvo::editor {

// A list of rows that lead to places of the page.
class PreviewList : public QTreeView {
 public:
  PreviewList(const Localized& name, QWidget* parent);

  // To a control of the page by its number, or to a position in the source view where there is
  // none. `goes` says whether the keyboard focus goes there, too.
  std::function<void(std::optional<int> control, int position, bool goes)> onPlace;

 protected:
  // Hides the column of controls where it would take the room of what matters.
  void resizeEvent(QResizeEvent* event) override;
  void Lead(std::size_t control, int position, bool goes);
};

// Conditions and lists of the page. The last column chooses what each shows.
class SwitchList final : public PreviewList {
 public:
  explicit SwitchList(QWidget* parent);
  ~SwitchList() override;
  void Show(const std::shared_ptr<const PreviewResult>& result);

  std::function<void(const QString& key, preview::Choice choice)> onChosen;

 private:
  class Model;
  class ChoiceDelegate;
  Model* model_;
};

class FindingList final : public PreviewList {
 public:
  explicit FindingList(QWidget* parent);
  void Show(const std::shared_ptr<const PreviewResult>& result);

 private:
  class Model;
  Model* model_;
};

}  // namespace kvo::editor
