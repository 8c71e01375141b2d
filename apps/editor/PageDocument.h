// The page that is being edited: a QTextDocument for the source view, kept in step with a PageText
// from which the bytes are made, and the names of the steps that can be undone.
#pragma once

#include <QObject>
#include <QTextCursor>
#include <QTextDocument>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "apps/editor/ControlSource.h"
#include "apps/editor/PageText.h"
#include "common/frame/DesignBox.h"

namespace kvo::editor {

// Everything about a control that its box in the source shows and says.
struct ControlLook {
  const ControlClass* contract = nullptr;
  std::string id;
  Box box;
  QString description;  // for people who hear it: class, captions, id
};

class PageDocument final : public QObject {
 public:
  explicit PageDocument(QObject* parent);

  QTextDocument* Document() { return &document_; }
  bool IsModified() const { return document_.isModified(); }
  // Replaces everything; nothing can be undone then, and nothing is modified.
  void Load(const PageText& text);
  // Replaces everything in one step that can be undone; what is equal stays untouched.
  void ReplaceAll(const PageText& text, const QString& step);

  // The same page with other bytes for its controls, as saving gives them. Without a name of its
  // own, it is undone and redone together with the step before.
  void TakeOver(const PageText& text, const QString& step);

  const PageText& Content() const { return content_; }
  // Counts the changes of the content.
  int Revision() const { return revision_; }

  // --- controls; each is one character ---
  bool IsControl(int position) const;
  // RuntimeError 5 when no control stands there.
  ControlSource SourceAt(int position) const;
  // nullptr when none stands there.
  std::shared_ptr<const ControlLook> LookAt(int position) const;
  std::shared_ptr<const ControlLook> LookOf(const QTextFormat& format) const;
  // The bytes that an odd character stands for; empty for any other format.
  static QByteArray BytesOf(const QTextFormat& format);
  bool HasId(const std::string& id) const;
  // The first of Name1, Name2, ... that no control has.
  std::string FreeId(const std::string& name) const;

  // The characters between two positions, selected.
  QTextCursor Range(int begin, int end);

  // --- edits; each is one step ---
  // Replaces the cursor's selection and puts the cursor behind what was inserted.
  void Insert(QTextCursor& cursor, const PageText& fragment, const QString& step);
  void ReplaceControl(int position, const QByteArray& bytes, const QString& step);

  // Gives what is done during its life a name in the undo menu. The innermost one counts.
  class Step {
   public:
    Step(PageDocument& document, const QString& name);
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    ~Step();

   private:
    PageDocument& document_;
    std::optional<QString> former_;
  };
  void Undo();
  void Redo();
  // Empty when there is nothing to undo or redo.
  QString UndoName() const;
  QString RedoName() const;

  std::function<void()> onChanged;  // after every change of the content

 private:
  struct NamedStep {
    int end;       // how many steps of the document can be undone after it
    QString name;  // empty: it belongs to the step before
  };

  void ContentsChanged(int position, int removed, int added);
  std::vector<Embedded> EmbeddedBetween(int begin, int end) const;
  // New lines take over what their neighbour has in front of it.
  void ForgetLineBreaks(int begin, int end);
  void ApplyFormats(int start, const PageText& text);
  void NameStep();
  // The step that ends where the document is now, or the next one behind it; steps_.end(): none.
  std::vector<NamedStep>::const_iterator LastStep() const;
  std::vector<NamedStep>::const_iterator NextStep() const;

  QTextDocument document_;
  PageText content_;
  int revision_ = 0;
  bool loading_ = false;
  std::optional<QString> step_;
  std::vector<NamedStep> steps_;
  mutable std::unordered_map<QString, std::shared_ptr<const ControlLook>> looks_;  // by bytes
};

}  // namespace kvo::editor
