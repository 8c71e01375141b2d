#include "apps/kvo/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <deque>
#include <optional>

#include "common/text/Suggest.h"
#include "document/office/OfficeFile.h"
#include "document/page/File.h"
#include "document/page/Utf8.h"

namespace kvo {
namespace {

// A line of help: what is typed, and what it means.
struct HelpEntry {
  std::string typed;
  Localized meaning;
};

void AppendEntries(std::string& out, Localized title, const std::vector<HelpEntry>& entries) {
  if (entries.empty()) return;
  constexpr std::size_t kMeaningColumn = 24;
  out += '\n' + Say(title) + ":\n";
  for (const HelpEntry& entry : entries) {
    std::string line = "  " + entry.typed;
    line.append(line.size() + 2 > kMeaningColumn ? 2 : kMeaningColumn - line.size(), ' ');
    const std::string meaning = Say(entry.meaning);
    for (const char c : meaning) {
      line += c;
      if (c == '\n') line.append(kMeaningColumn, ' ');
    }
    out += line + '\n';
  }
}

void AppendExamples(std::string& out, Localized examples) {
  out += '\n' + Say({"Beispiele", "Examples"}) + ":\n  ";
  for (const char c : Say(examples)) {
    out += c;
    if (c == '\n') out += "  ";
  }
  out += '\n';
}

const HelpEntry kHelpEntry{"-h, --help", {"diese Hilfe zeigen", "show this help"}};
constexpr std::string_view kHelpFlags = "-h,--help";

// Makes the parser pass words unchanged. It would read "[a,b]" as a list, so appends a character
// that no argument can contain to a word that ends with "]".
constexpr char kGuard = '\0';
void Guard(std::string& word) {
  if (word.ends_with(']')) word += kGuard;
}
std::string Unguarded(std::string word) {
  if (word.ends_with(kGuard)) word.pop_back();
  return word;
}

// A script passes an empty value when it never set a variable.
Failure EmptyValue(const std::string& option, const std::string& command) {
  return Failure(Say({"{} braucht einen Wert, der nicht leer ist. „kvo {} --help“ zeigt Beispiele.",
                      "{} needs a value that is not empty. \"kvo {} --help\" shows examples."},
                     {option, command}));
}

class CommandParts final : public Command {
 public:
  CommandParts(CLI::App& app, std::string name, Localized summary, Localized examples)
      : app_(app), name_(std::move(name)), summary_(summary), examples_(examples) {
    app_.set_help_flag();
    app_.add_flag(std::string(kHelpFlags), help_);
  }

  Command& Argument(const std::string& name, std::string& value, Localized meaning) override {
    required_.emplace_back(Add(name, value), name);
    arguments_.push_back({name, meaning});
    return *this;
  }
  Command& Arguments(const std::string& name, std::vector<std::string>& values, Localized meaning,
                     bool required) override {
    CLI::Option* option = app_.add_option(name, [&values](const CLI::results_t& words) {
      for (const std::string& word : words) values.push_back(Unguarded(word));
      return true;
    });
    option->expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args();
    if (required) required_.emplace_back(option, name);
    arguments_.push_back({required ? name + "..." : "[" + name + "...]", meaning});
    return *this;
  }
  Command& Option(const std::string& flags, const std::string& valueName, std::string& value,
                  Localized meaning) override {
    Add(flags, value)->check([flags, this](const std::string& word) {
      if (word.empty()) throw EmptyValue(Typed(flags), name_);
      return std::string();
    });
    options_.push_back({Typed(flags) + ' ' + valueName, meaning});
    return *this;
  }
  Command& Flag(const std::string& flags, bool& value, Localized meaning) override {
    app_.add_flag(flags, value);
    options_.push_back({Typed(flags), meaning});
    return *this;
  }
  Command& FailsWith(ExitCode code) override {
    failure_ = code;
    return *this;
  }
  Command& ExitCodes(std::vector<Localized> meanings) override {
    for (const Localized& meaning : meanings)
      exitCodes_.push_back({std::to_string(exitCodes_.size()), meaning});
    return *this;
  }
  void Run(std::function<ExitCode()> action) override { action_ = std::move(action); }

  const CLI::App& App() const { return app_; }
  const std::string& Name() const { return name_; }
  const Localized& Summary() const { return summary_; }
  ExitCode FailureCode() const { return failure_; }

  std::string Help() const {
    std::string out = Say({"Aufruf: ", "Usage: "}) + "kvo " + name_;
    for (const HelpEntry& argument : arguments_) out += ' ' + argument.typed;
    out += Say({" [OPTION...]", " [OPTION...]"}) + "\n\n" + Say(summary_) + '\n';
    AppendEntries(out, {"Argumente", "Arguments"}, arguments_);
    std::vector<HelpEntry> options = options_;
    options.push_back(kHelpEntry);
    AppendEntries(out, {"Optionen", "Options"}, options);
    AppendEntries(out, {"Rückgabewerte", "Exit codes"}, exitCodes_);
    AppendExamples(out, examples_);
    return out;
  }

  ExitCode Execute() const {
    if (help_) {
      Print(Help());
      return ExitCode::good;
    }
    for (const auto& [option, name] : required_)
      if (option->count() == 0)
        throw Failure(Say({"{} fehlt. „kvo {} --help“ zeigt Beispiele.",
                           "{} is missing. \"kvo {} --help\" shows examples."},
                          {name, name_}));
    return action_();
  }

 private:
  CLI::Option* Add(const std::string& name, std::string& value) {
    return app_.add_option(name, [&value](const CLI::results_t& words) {
      value = Unguarded(words.front());
      return true;
    });
  }
  static std::string Typed(std::string flags) {
    const std::size_t comma = flags.find(',');
    if (comma != std::string::npos) flags.insert(comma + 1, 1, ' ');
    return flags;
  }

  CLI::App& app_;
  std::string name_;
  Localized summary_;
  Localized examples_;
  std::vector<HelpEntry> arguments_;
  std::vector<HelpEntry> options_;
  std::vector<HelpEntry> exitCodes_;
  std::vector<std::pair<CLI::Option*, std::string>> required_;
  std::function<ExitCode()> action_;
  ExitCode failure_ = ExitCode::failure;
  bool help_ = false;
};

void CheckArguments(int argc, char** argv) {
  for (int i = 1; i < argc; ++i)
    if (page::FindInvalidUtf8(argv[i]) != std::string_view::npos)
      throw Failure(
          Say({"Argument {} ist kein gültiges UTF-8. Ein Terminal mit UTF-8 verwenden, oder eine "
               "Datei mit solchem Namen umbenennen.",
               "Argument {} is not valid UTF-8. Use a UTF-8 terminal, or rename a file with such "
               "a name."},
              {std::to_string(i)}));
}

}  // namespace

std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& names) {
  const std::string_view name = Suggest(word, names);
  if (name.empty()) return {};
  return Say({" Meinten Sie „{}“?", " Did you mean \"{}\"?"}, {name});
}

struct CommandLine::Parts {
  explicit Parts(std::string_view theVersion) : version(theVersion) {
    app.set_help_flag();
    app.add_flag(std::string(kHelpFlags), help);
    app.add_flag("-V,--version", showVersion);
    // After the first command, a command's name is an ordinary word, such as a page or an id.
    app.require_subcommand(0, 1);
  }

  std::string Help() const {
    std::string out =
        Say({"Aufruf: kvo BEFEHL [ARGUMENT...]\n\nSpeichert, prüft und "
             "veröffentlicht Seiten mit KVOPDesignObjects.\n",
             "Usage: kvo COMMAND [ARGUMENT...]\n\nSaves, checks and publishes pages "
             "with KVOPDesignObjects.\n"});
    std::vector<HelpEntry> entries;
    for (const CommandParts& command : commands)
      entries.push_back({command.Name(), command.Summary()});
    AppendEntries(out, {"Befehle", "Commands"}, entries);
    AppendEntries(out, {"Optionen", "Options"},
                  {kHelpEntry, {"-V, --version", {"die Version zeigen", "show the version"}}});
    AppendExamples(out, {"kvo save newsletter.html\n"
                         "kvo inspect newsletter.html\n"
                         "kvo save --help               Hilfe zu einem Befehl",
                         "kvo save newsletter.html\n"
                         "kvo inspect newsletter.html\n"
                         "kvo save --help               help on one command"});
    return out;
  }

  std::vector<std::string_view> CommandNames() const {
    std::vector<std::string_view> names;
    for (const CommandParts& command : commands) names.push_back(command.Name());
    return names;
  }

  const CommandParts* Named() const {
    for (const CommandParts& command : commands)
      if (command.App().parsed()) return &command;
    return nullptr;
  }

  // Throws the parser's error in the user's language.
  [[noreturn]] void Refuse(const CLI::ParseError& error) const {
    const CommandParts* command = Named();
    const std::string hint =
        Say({" „kvo {}--help“ zeigt, was es gibt.", " \"kvo {}--help\" shows what there is."},
            {command == nullptr ? "" : command->Name() + ' '});
    const std::string what = error.what();
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
      const std::vector<std::string> extras = app.remaining(true);
      const std::string extra = extras.empty() ? "?" : Unguarded(extras.front());
      if (extra.size() > 1 && extra.front() == '-')
        throw Failure(Say({"Unbekannte Option „{}“.", "Unknown option \"{}\"."}, {extra}) + hint);
      if (command == nullptr)
        throw Failure(Say({"Unbekannter Befehl „{}“.", "Unknown command \"{}\"."}, {extra}) +
                      DidYouMean(extra, CommandNames()) + hint);
      throw Failure(Say({"„{}“ ist zu viel.", "\"{}\" is too much."}, {extra}) + hint);
    }
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr)
      throw Failure(Say({"{} braucht genau einen Wert.", "{} needs exactly one value."},
                        {what.substr(0, what.find(':'))}) +
                    hint);
    throw Failure(what + hint);
  }

  ExitCode Execute(int argc, char** argv) {
    CheckArguments(argc, argv);
    std::vector<std::string> words(argv + 1, argv + argc);
    if (!words.empty() && words.front() == "help") {
      words.erase(words.begin());
      words.emplace_back("--help");
    }
    // The parser would read the next word as the missing value.
    const auto end = std::ranges::find(words, "--");
    const auto cut = std::find_if(words.begin(), end, [](const std::string& word) {
      return word.starts_with("--") && word.ends_with('=');
    });
    if (cut != end) throw EmptyValue(cut->substr(0, cut->size() - 1), words.front());
    std::ranges::for_each(words, Guard);
    std::ranges::reverse(words);  // the parser expects them in reverse
    try {
      app.parse(words);
    } catch (const CLI::ParseError& error) {
      Refuse(error);
    }
    if (showVersion) {
      Print("kvo " + version + '\n');
      return ExitCode::good;
    }
    if (const CommandParts* command = Named(); command != nullptr && !help)
      return command->Execute();
    if (!help) throw Failure(Say({"Welcher Befehl?", "Which command?"}) + "\n\n" + Help());
    Print(Help());
    return ExitCode::good;
  }

  CLI::App app;
  std::string version;
  std::deque<CommandParts> commands;
  bool help = false;
  bool showVersion = false;
};

CommandLine::CommandLine(std::string_view version) : parts_(std::make_unique<Parts>(version)) {}
CommandLine::~CommandLine() = default;

Command& CommandLine::Add(const std::string& name, Localized summary, Localized examples) {
  return parts_->commands.emplace_back(*parts_->app.add_subcommand(name), name, summary, examples);
}

ExitCode CommandLine::Execute(int argc, char** argv) {
  try {
    const ExitCode code = parts_->Execute(argc, argv);
    FlushOutput();
    return code;
  } catch (const office::JsonFileError& error) {
    ShowProblems(Stream::error, error.File(), error.Problems());
  } catch (const std::bad_alloc&) {
    throw;  // a message needs memory: see main()
  } catch (const std::exception& error) {
    PrintError(FailureText(error));
  }
  const CommandParts* const command = parts_->Named();
  return command == nullptr ? ExitCode::failure : command->FailureCode();
}

}  // namespace kvo
