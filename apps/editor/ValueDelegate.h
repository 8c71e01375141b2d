// The inputs of the property browser's values: lines of text, lists and colours.
#pragma once

#include <QString>
#include <QStyledItemDelegate>
#include <string>
#include <vector>

namespace kvo::editor {

struct OfferedValue {
  QString caption;
  std::string value;
};

// How the user enters a value.
struct ValueInput {
  enum class Kind { line, list, openList, color };  // an open list accepts any text
  Kind kind = Kind::line;
  std::vector<OfferedValue> offers{};
  QString name{};  // for screen readers

  // Returns the caption of a value; the value itself if the list does not have it.
  QString CaptionOf(const std::string& value) const;
};

// Provides the values of a view's rows.
class ValueSource {
 public:
  virtual std::string ValueAt(const QModelIndex& index) const = 0;
  virtual ValueInput InputAt(const QModelIndex& index) const = 0;
  // The user entered another value.
  virtual void Take(const QModelIndex& index, const std::string& value) = 0;

 protected:
  ~ValueSource() = default;
};

class ValueDelegate final : public QStyledItemDelegate {
 public:
  ValueDelegate(ValueSource& source, QObject* parent);

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;

 private:
  // Takes the value and closes the input.
  void Finish(QWidget* editor) const;

  ValueSource& source_;
};

}  // namespace kvo::editor
