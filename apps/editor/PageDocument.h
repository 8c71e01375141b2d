// The page being edited: a QTextDocument for the source view, kept in sync with a PageText that
// produces the bytes, and the names of the undo steps.
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

// What a control's box in the source view shows, and what screen readers read.
struct ControlLook {
  const ControlClass* contract = nullptr;
  std::string id;
  Box box;
  QString description;  // for screen readers: class, captions, id
};

class PageDocument final : public QObject {
 public:
  explicit PageDocument(QObject* parent);

  QTextDocument* Document() { return &document_; }
  bool IsModified() const { return document_.isModified(); }
  // Replaces everything; clears the undo history and the modified state.
  void Load(const PageText& text);
  // Replaces everything in one undo step; leaves equal parts untouched.
  void ReplaceAll(const PageText& text, const QString& step);

  // Takes over the saved bytes of the page's controls. With an empty name, it is undone and redone
  // together with the previous step.
  void TakeOver(const PageText& text, const QString& step);

  const PageText& Content() const { return content_; }
  // Counts the changes of the content.
  int Revision() const { return revision_; }

  // --- controls; each is one character ---
  bool IsControl(int position) const;
  // RuntimeError 5 when there is no control there.
  ControlSource SourceAt(int position) const;
  // nullptr when there is none.
  std::shared_ptr<const ControlLook> LookAt(int position) const;
  std::shared_ptr<const ControlLook> LookOf(const QTextFormat& format) const;
  // Returns the bytes that an odd character represents; empty for any other format.
  static QByteArray BytesOf(const QTextFormat& format);
  bool HasId(const std::string& id) const;
  // Returns the first of Name1, Name2, ... that no control has.
  std::string FreeId(const std::string& name) const;

  // Selects the characters between two positions.
  QTextCursor Range(int begin, int end);

  // --- edits; each is one step ---
  // Replaces the cursor's selection and puts the cursor after the inserted text.
  void Insert(QTextCursor& cursor, const PageText& fragment, const QString& step);
  void ReplaceControl(int position, const QByteArray& bytes, const QString& step);

  // Names the edits made during its lifetime in the undo menu. The innermost name counts.
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
  // The part of the content before the change that led to this revision, and how many characters
  // took its place; nothing when the page was loaded.
  struct Replaced {
    int position = 0;
    int removed = 0;
    int added = 0;
  };
  const std::optional<Replaced>& LastChange() const { return lastChange_; }

 private:
  struct NamedStep {
    int end;       // the document's number of undo steps after it
    QString name;  // empty if it belongs to the previous step
  };

  void ContentsChanged(int position, int removed, int added);
  std::vector<Embedded> EmbeddedBetween(int begin, int end) const;
  // Resets the line breaks of new lines, which inherit them from their neighbour.
  void ForgetLineBreaks(int begin, int end);
  void ApplyFormats(int start, const PageText& text);
  void NameStep();
  // Return the last step done and the next one to redo; steps_.end() if there is none.
  std::vector<NamedStep>::const_iterator LastStep() const;
  std::vector<NamedStep>::const_iterator NextStep() const;

  QTextDocument document_;
  PageText content_;
  int revision_ = 0;
  std::optional<Replaced> lastChange_;
  bool loading_ = false;
  std::optional<QString> step_;
  std::vector<NamedStep> steps_;
  mutable std::unordered_map<QString, std::shared_ptr<const ControlLook>> looks_;  // by bytes
};

}  // namespace kvo::editor
