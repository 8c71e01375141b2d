#include "apps/editor/ControlSource.h"

#include <algorithm>
#include <stdexcept>

#include "document/page/ElementWriter.h"

namespace kvo::editor {

QByteArray ToBytes(std::string_view bytes) {
  return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

ControlSource::ControlSource(const QByteArray& bytes, const page::PageEncoding& encoding)
    : encoding_(encoding), page_("<meta charset=\"" + encoding.Name() + "\">") {
  declaration_ = page_.size();
  page_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  std::vector<page::FoundControl> controls = page::Inspect(page::Page(page_)).controls;
  if (controls.size() != 1 || controls[0].begin != declaration_ ||
      controls[0].end != page_.size() || controls[0].contract == nullptr)
    throw std::logic_error("these bytes are not one control");
  found_ = std::move(controls[0]);
}

std::optional<QByteArray> ControlSource::Edited(const Control& edited, bool overwrite) const {
  const std::vector<MemoryBag::Entry> bag = page::StoredBag(edited);
  const page::Edit edit{0, [&bag](Control& control) {
                          MemoryBag entries(bag);
                          control.ReadProperties(entries);
                        }};
  page::SaveOptions options;
  options.force = overwrite;
  options.edit = &edit;
  page::StringSink sink;
  const page::Problems problems = page::Save(page::Page(page_), sink, options);
  if (!page::HasErrors(problems))
    return ToBytes(std::string_view(sink.Text()).substr(declaration_));
  const bool byHand = std::ranges::any_of(problems, [](const page::Problem& problem) {
    return problem.rule == page::rule::editedByHand || problem.rule == page::rule::missingEnd;
  });
  if (byHand && !overwrite) return std::nullopt;
  return ElementOf(found_.id, bag, encoding_);
}

QByteArray ControlSource::WithId(const std::string& id) const {
  return ElementOf(id, found_.bag, encoding_);
}

QByteArray ControlSource::InEncoding(const page::PageEncoding& encoding) const {
  const std::string_view bytes = std::string_view(page_).substr(declaration_);
  std::string utf8;
  std::string written;
  if (encoding_.Decode(bytes, utf8) == std::string::npos &&
      !page::AppendText(utf8, encoding, written))
    return ToBytes(written);
  return ElementOf(found_.id, found_.bag, encoding);
}

QByteArray ControlSource::ElementOf(const std::string& id, const std::vector<MemoryBag::Entry>& bag,
                                    const page::PageEncoding& encoding) const {
  return ToBytes(page::ElementText(Contract(),
                                   id.empty() ? std::nullopt : std::optional<std::string_view>(id),
                                   bag, found_.attributes, encoding));
}

QByteArray ControlSource::Element(const Control& control, const std::string& id,
                                  const page::PageEncoding& encoding) {
  return ToBytes(page::ElementText(control.Class(), id, page::StoredBag(control), {}, encoding));
}

}  // namespace kvo::editor
