// One control as it stands in a page, on its own.
#pragma once

#include <QByteArray>
#include <optional>
#include <string>
#include <vector>

#include "document/page/Page.h"

namespace kvo::editor {

QByteArray ToBytes(std::string_view bytes);

class ControlSource {
 public:
  // The bytes must be exactly one control, element or saved span, that can be loaded.
  ControlSource(const QByteArray& bytes, const page::PageEncoding& encoding);

  const ControlClass& Contract() const { return *found_.contract; }
  const std::string& Id() const { return found_.id; }

  // A new instance; throws what the control throws.
  std::shared_ptr<Control> Load() const { return page::Load(Contract(), found_.bag); }

  // The control with what `edited` would store now, as a saved span. Where the runtime text cannot
  // stand in the page it is an element, and the page's check says why. Nothing when the span's text
  // was edited by hand, unless that may be overwritten.
  std::optional<QByteArray> Edited(const Control& edited, bool overwrite) const;

  // As an element with another id; an empty one is left out.
  QByteArray WithId(const std::string& id) const;
  // As it stands, or as an element where only that can be written. RuntimeError 5 when neither can.
  QByteArray InEncoding(const page::PageEncoding& encoding) const;

  // A new control's element.
  static QByteArray Element(const Control& control, const std::string& id,
                            const page::PageEncoding& encoding);

 private:
  QByteArray ElementOf(const std::string& id, const std::vector<MemoryBag::Entry>& bag,
                       const page::PageEncoding& encoding) const;

  page::PageEncoding encoding_;
  std::string page_;  // the control in a page that declares its encoding
  std::size_t declaration_;
  page::FoundControl found_;
};

}  // namespace kvo::editor
