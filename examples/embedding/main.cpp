// change_control PAGE ID NAME VALUE: sets a property of one control and saves the page.
#include <exception>
#include <iostream>

#include "common/Version.h"
#include "document/page/File.h"
#include "document/page/Page.h"
#include "host/headless/HeadlessPlatform.h"

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "Usage: change_control PAGE ID NAME VALUE (KVOPDesignObjects " KVO_VERSION ")\n";
    return 2;
  }
  const std::string file = argv[1], id = argv[2], name = argv[3], value = argv[4];
  try {
    // Provides the services that the controls need; no desktop required.
    kvo::HeadlessPlatform platform;
    const kvo::PlatformScope installed(platform);

    const kvo::page::Page page(kvo::page::ReadFile(file));
    for (const auto& control : kvo::page::Inspect(page).controls) {
      if (control.id != id) continue;
      const kvo::page::Edit edit{control.index,
                                 [&](kvo::Control& changed) { changed.Let(name, value); }};
      const auto output = kvo::page::OpenOutput(file);
      const auto problems = kvo::page::Save(page, *output, {.edit = &edit});
      for (const auto& problem : problems)
        std::cerr << kvo::page::Describe(problem, file, kvo::Language::english) << '\n';
      if (kvo::page::HasErrors(problems)) return 1;  // keeps the page unchanged
      output->Commit();
      return 0;
    }
    std::cerr << file << " has no control with the id " << id << '\n';
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
  }
  return 1;
}
