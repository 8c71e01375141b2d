#include "fuzz/PageRules.h"

#include "document/page/Page.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo::page {
namespace {

// A page's text outside its controls, and the controls' bags.
struct Parts {
  std::string outside;
  std::vector<std::vector<MemoryBag::Entry>> bags;
};

Parts PartsOf(std::string_view page, const std::vector<FoundControl>& controls) {
  Parts parts;
  std::size_t at = 0;
  for (const FoundControl& control : controls) {
    parts.outside += page.substr(at, control.begin - at);
    parts.outside += '\1';
    parts.bags.push_back(StoredBag(*Load(*control.contract, control.bag)));
    at = control.end;
  }
  parts.outside += page.substr(at);
  return parts;
}

std::string Saved(const std::string& page, bool force, Problems& problems) {
  StringSink sink;
  SaveOptions options;
  options.force = force;
  problems = Save(Page(page), sink, options);
  return sink.Text();
}

}  // namespace

std::string BrokenRule(std::string_view text) {
  HeadlessPlatform platform;
  const PlatformScope scope(platform);
  const std::string page(text);
  const Inspection found = Inspect(Page(page));

  StringSink publishedSink;
  const Problems publishProblems = Publish(Page(page), publishedSink);
  const std::string& published = publishedSink.Text();
  Check(Page(page));

  Problems problems;
  Saved(page, false, problems);
  if (found.controls.empty() && !HasErrors(found.problems)) {
    if (HasErrors(problems)) return "cannot save a page without controls";
    if (Saved(page, false, problems) != page) return "saving changed a page without controls";
    if (published != page) return "publishing changed a page without controls";
    return {};
  }

  const std::string once = Saved(page, true, problems);
  if (HasErrors(problems)) {
    // Publishing may leave out params that cannot be written, but otherwise fails when saving
    // fails.
    if (HasErrors(found.problems) && !HasErrors(publishProblems))
      return "a page with problems was published";
    return {};
  }
  if (HasErrors(found.problems)) return "a page with problems was saved";
  Problems again;
  if (Saved(once, false, again) != once) return "saving twice changed the page";
  if (HasErrors(again)) return "cannot save a saved page again";

  const std::string_view before(page);
  const Inspection after = Inspect(Page(once));
  const Parts partsBefore = PartsOf(before, found.controls);
  const Parts partsAfter = PartsOf(once, after.controls);
  if (partsBefore.outside != partsAfter.outside) return "bytes outside the controls changed";
  bool unstable = false;
  for (const Problem& problem : problems) unstable |= problem.rule == rule::unstableBag;
  if (!unstable && partsBefore.bags != partsAfter.bags) return "a bag changed";

  // The published page is the text outside the controls, with runtime text in between.
  std::size_t at = 0;
  std::size_t from = 0;
  for (const FoundControl& control : found.controls) {
    const std::string_view outside = before.substr(from, control.begin - from);
    const std::size_t where = published.find(outside, at);
    if (where == std::string::npos || (from == 0 && where != 0))
      return "publishing changed bytes outside the controls";
    at = where + outside.size();
    from = control.end;
  }
  if (!std::string_view(published).ends_with(before.substr(from)))
    return "publishing changed bytes after the last control";
  return {};
}

}  // namespace kvo::page
