#include "apps/kvo/PreviewFindings.h"

#include "apps/kvo/Terminal.h"
#include "document/page/Messages.h"

namespace kvo {
namespace {

using FindingKind = preview::Finding::Kind;

constexpr std::size_t kMostFindings = 100;

struct FindingRow {
  std::string_view id;  // in JSON
  Localized label;
  page::Severity severity;  // for its colour
};
constexpr FindingRow kFindingRows[] = {
    {"missing", {"fehlt", "missing"}, page::Severity::error},
    {"outside", {"außerhalb", "outside"}, page::Severity::warning},
};
const FindingRow& FindingRowOf(FindingKind kind) {
  return kFindingRows[static_cast<std::size_t>(kind)];
}

// The same for all records. A message may quote the name of its record.
std::string WithoutRecord(std::string message, const std::string& record) {
  const std::string quoted = page::messages::Quoted(record);
  if (const std::size_t at = message.find(quoted); at != std::string::npos)
    message.erase(at, quoted.size());
  return message;
}

}  // namespace

Json ToJson(const preview::Finding& finding) {
  return {{"kind", FindingRowOf(finding.kind).id},
          {"line", finding.place.line},
          {"column", finding.place.column},
          {"class", finding.control},
          {"id", finding.id},
          {"message", finding.message.In(UserLanguage())}};
}

void PreviewFindings::Add(const preview::Preview& preview, const std::string& record,
                          const std::string& shownAs) {
  ++previews_;
  for (const preview::Finding& finding : preview.findings) {
    anyMissing_ = anyMissing_ || finding.kind == FindingKind::missing;
    Key key(finding.offset, finding.kind, WithoutRecord(finding.message.english, record));
    if (const auto seen = seen_.find(key); seen != seen_.end())
      ++seen->second.more;
    else if (seen_.size() < kMostFindings)
      seen_.emplace(std::move(key), Seen{finding, shownAs});
    else
      ++others_;
  }
}

void PreviewFindings::Show(std::string_view file) const {
  for (const auto& [key, seen] : seen_) {
    const preview::Finding& finding = seen.finding;
    const FindingRow& row = FindingRowOf(finding.kind);
    std::string line =
        page::DescribeAt(file, finding.place, row.label.In(UserLanguage()), finding.control,
                         finding.id, finding.message.In(UserLanguage()));
    if (previews_ > 1) {
      line += " (" + seen.record;
      if (seen.more > 0)
        line += Say({" und {} weitere", " and {} more"}, {std::to_string(seen.more)});
      line += ')';
    }
    ShowLine(Stream::error, file, row.severity, std::move(line));
  }
  if (others_ > 0)
    Tell(Say({"kvo: ... und {} weitere.", "kvo: ... and {} more."}, {std::to_string(others_)}));
}

}  // namespace kvo
