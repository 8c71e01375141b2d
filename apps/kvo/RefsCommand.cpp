#include <algorithm>
#include <utility>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "apps/kvo/PageRun.h"
#include "apps/kvo/UsedNames.h"
#include "document/page/Problem.h"
#include "document/uses/Uses.h"

namespace kvo {
namespace {

struct RefsValues {
  std::string what;
  std::vector<std::string> pages;
  bool json = false;
};

// What a use is called, in JSON and for users.
struct FormName {
  std::string_view id;
  Localized label;
};
FormName NameOf(const uses::Use& use) {
  switch (use.form) {
    case uses::Form::path:
      return {"path", {"Ausdruck", "expression"}};
    case uses::Form::tag:
      return {"tag", {"Tag", "tag"}};
    case uses::Form::word:
      return {"script", {"Skript", "script"}};
    case uses::Form::value:
      break;
  }
  if (use.name.kind == uses::Kind::controlId) return {"id", {"id", "id"}};
  if (use.name.kind == uses::Kind::controlClass) return {"class", {"Klasse", "class"}};
  return {"field", {"Feld", "field"}};
}

// A use and what is shown of it.
struct Shown {
  uses::Use use;
  std::string className;
  std::string id;
  std::string text;
};

void ShowUse(const std::string& file, const Shown& shown) {
  const std::string& property = shown.use.property;
  ShowLine(Stream::output, file, page::Severity::warning,
           page::DescribeAt(file, shown.use.place, NameOf(shown.use).label.In(UserLanguage()),
                            shown.className, shown.id,
                            property.empty() ? shown.text : property + ": " + shown.text));
}

Json UseJson(const std::string& file, const Shown& shown) {
  return {{"file", file},
          {"line", shown.use.place.line},
          {"column", shown.use.place.column},
          {"kind", NameOf(shown.use).id},
          {"name", uses::Written(shown.use.name)},
          {"class", shown.className},
          {"id", shown.id},
          {"property", shown.use.property},
          {"text", shown.text}};
}

ExitCode Refs(const RefsValues& values) {
  const std::vector<uses::Name> meant = uses::NamesMeant(values.what);
  UsedNames used;
  Json all = Json::array();
  bool found = false;
  const auto show = [&](const std::string& file, const std::vector<Shown>& hits) {
    found = found || !hits.empty();
    for (const Shown& shown : hits) {
      if (values.json)
        all.push_back(UseJson(file, shown));
      else
        ShowUse(file, shown);
    }
  };
  const ExitCode code = ForEachPage(PagesIn(values.pages), [&](const std::string& file) {
    const page::Page page(page::ReadFile(file));
    const uses::PageUses pageUses = uses::FindUses(page);
    std::vector<Shown> hits;
    for (const uses::Use& use : pageUses.uses) {
      if (std::ranges::find(meant, use.name) == meant.end()) continue;
      Shown& shown =
          hits.emplace_back(Shown{use, {}, {}, uses::Excerpt(page, pageUses.controls, use)});
      if (use.control == uses::Use::kNoControl) continue;
      shown.className = pageUses.controls[use.control].className;
      shown.id = pageUses.controls[use.control].id;
    }
    UsedNames names;
    names.Add(pageUses.uses);
    return PageResult{ExitCode::good, [&, file, hits = std::move(hits), names = std::move(names)] {
                        used.Add(names);
                        show(ShownName(file), hits);
                      }};
  });
  if (values.json) PrintJson({{"uses", std::move(all)}});
  if (found)
    used.TellOtherCases(values.what);
  else
    used.TellUsedNowhere(values.what);
  return Worse(code, found ? ExitCode::good : ExitCode::problemsFound);
}

}  // namespace

void AddRefsCommand(CommandLine& line) {
  const auto values = std::make_shared<RefsValues>();
  line.Add("refs",
           {"Nennt jede Stelle, an der die Seiten ein Feld, eine id oder eine Klasse verwenden.",
            "Lists every place where the pages use a field, an id or a class."},
           Both("kvo refs customer.City newsletter.html\n"
                "kvo refs order.Total mails templates\n"
                "kvo refs DTCIf mails --json"))
      .Argument("NAME", values->what,
                {"„customer.“ oder „order.“ und der Name eines Feldes, die id eines Controls oder "
                 "der Name einer Klasse",
                 "\"customer.\" or \"order.\" and the name of a field, the id of a control, or the "
                 "name of a class"})
      .Arguments("PAGE", values->pages,
                 {"die Seiten oder ihre Ordner; „-“ ist die Standardeingabe",
                  "the pages or their folders; \"-\" is standard input"},
                 true)
      .Flag("--json", values->json,
            {"ein JSON-Dokument für andere Programme", "one JSON document for other programs"})
      .Run([values] { return Refs(*values); });
}

}  // namespace kvo
