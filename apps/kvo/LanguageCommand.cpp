#include <unistd.h>

#include "apps/Version.h"
#include "apps/kvo/Commands.h"
#include "apps/kvo/FindPages.h"
#include "apps/language/Serve.h"

namespace kvo {
namespace {

std::vector<std::string> PagesOrNone(const std::string& folder) {
  try {
    return PagesIn({folder});
  } catch (const Failure&) {
    return {};
  }
}

ExitCode ServeLanguage() {
  const auto ending =
      language::Serve(STDIN_FILENO, STDOUT_FILENO, PagesOrNone, std::string(ProgramVersion()));
  switch (ending) {
    case language::Ending::shutDown:
      return ExitCode::good;
    case language::Ending::notShutDown:
      return ExitCode::problemsFound;
    case language::Ending::noMessages:
      break;
  }
  throw Failure(
      Say({"Auf der Standardeingabe kam keine Nachricht eines Editors. „kvo lsp“ wird von "
           "Editoren gestartet; docs/editors.md zeigt, wie.",
           "Standard input holds no message of an editor. Editors start \"kvo lsp\"; "
           "docs/editors.md shows how."}));
}

}  // namespace

void AddLanguageCommand(CommandLine& line) {
  const auto stdio = std::make_shared<bool>();
  line.Add("lsp",
           {"Ein Sprachserver für Editoren: Probleme beim Tippen, Vervollständigen, Umbenennen. "
            "Spricht das Language Server Protocol über Standardeingabe und -ausgabe.",
            "A language server for editors: problems while typing, completion, renaming. Speaks "
            "the Language Server Protocol over standard input and output."},
           Both("vim.lsp.start_client({name = 'kvo', cmd = {'kvo', 'lsp'}})"))
      .Flag("--stdio", *stdio,
            {"ohne Wirkung; manche Editoren geben es immer an",
             "ignored; some editors always pass it"})
      .Run([stdio] { return ServeLanguage(); });
}

}  // namespace kvo
