#include "apps/kvo/Commands.h"
#include "apps/kvo/PageRun.h"

namespace kvo {
namespace {

struct WriteValues {
  std::vector<std::string> pages;
  std::string output;
  bool force = false;
};

ExitCode Save(const WriteValues& values) {
  const NamedPages pages = FindPages(values.pages, values.output);
  return WritePages(pages, Targets(pages, values.output, OverPage::itself),
                    [&](const page::Page& page, page::Sink& sink) {
                      return page::Save(page, sink, {.force = values.force});
                    });
}

ExitCode Publish(const WriteValues& values) {
  if (values.output.empty() && values.pages != std::vector<std::string>{"-"})
    throw Failure(
        Say({"Wohin? Mit -o DATEI oder -o ORDNER das Ziel angeben, mit „-o -“ die "
             "Standardausgabe.",
             "Where to? Name the target with -o FILE or -o FOLDER, or \"-o -\" for "
             "standard output."}));
  const NamedPages pages = FindPages(values.pages, values.output);
  return WritePages(pages, Targets(pages, values.output, OverPage::nothing), page::Publish);
}

}  // namespace

void AddWriteCommands(CommandLine& line) {
  const auto save = std::make_shared<WriteValues>();
  line.Add("save",
           {"Lädt jedes Control der Seiten und schreibt seinen Laufzeittext hinein.",
            "Loads every control of the pages and writes its runtime text into them."},
           {"kvo save newsletter.html\n"
            "kvo save *.html\n"
            "kvo save mails                    alle Seiten im Ordner mails\n"
            "kvo save newsletter.html -o fertig/newsletter.html\n"
            "kvo save - < newsletter.html > fertig.html",
            "kvo save newsletter.html\n"
            "kvo save *.html\n"
            "kvo save mails                    every page in the folder mails\n"
            "kvo save newsletter.html -o done/newsletter.html\n"
            "kvo save - < newsletter.html > done.html"})
      .Arguments("PAGE", save->pages, kPagesToRead, true)
      .Option("-o,--output", "OUT", save->output,
              {"Datei oder Ordner statt der Seite selbst; „-“ ist die Standardausgabe",
               "file or folder instead of the page itself; \"-\" is standard output"})
      .Flag("--force", save->force,
            {"auch überschreiben, was von Hand am Laufzeittext geändert wurde",
             "overwrite runtime text even where it was edited by hand"})
      .Run([save] { return Save(*save); });

  const auto publish = std::make_shared<WriteValues>();
  line.Add("publish",
           {"Schreibt nur den Laufzeittext an die Stelle jedes Controls.",
            "Writes only the runtime text in place of each control."},
           {"kvo publish newsletter.html -o fertig/newsletter.html\n"
            "kvo publish *.html -o fertig/\n"
            "kvo publish mails -o fertig/      mit den Ordnern darin\n"
            "kvo new DTCPrint Value='#order.total#' | kvo publish -",
            "kvo publish newsletter.html -o done/newsletter.html\n"
            "kvo publish *.html -o done/\n"
            "kvo publish mails -o done/        with the folders in it\n"
            "kvo new DTCPrint Value='#order.total#' | kvo publish -"})
      .Arguments("PAGE", publish->pages, kPagesToRead, true)
      .Option("-o,--output", "OUT", publish->output,
              {"Zieldatei oder Zielordner; „-“ ist die Standardausgabe",
               "target file or folder; \"-\" is standard output"})
      .Run([publish] { return Publish(*publish); });
}

}  // namespace kvo
