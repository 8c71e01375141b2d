// The source of a single control in a page.
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
  // The bytes must be exactly one control that can be loaded, as an element or a saved span.
  ControlSource(const QByteArray& bytes, const page::PageEncoding& encoding);

  const ControlClass& Contract() const { return *found_.contract; }
  const std::string& Id() const { return found_.id; }

  // Creates an instance; throws what the control throws.
  std::shared_ptr<Control> Load() const { return page::Load(Contract(), found_.bag); }

  // Returns the control with the properties of `edited`, as a saved span, or as an element when the
  // page cannot hold the runtime text; the page's check says why. Nothing when the span's text was
  // edited by hand, unless `overwrite` is set.
  std::optional<QByteArray> Edited(const Control& edited, bool overwrite) const;

  // Returns it as an element with another id; omits an empty one.
  QByteArray WithId(const std::string& id) const;
  // Returns it unchanged, or as an element if only that can be written. RuntimeError 5 when neither
  // can.
  QByteArray InEncoding(const page::PageEncoding& encoding) const;

  // Returns the element of a new control.
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
