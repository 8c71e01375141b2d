#include <filesystem>

#include "tests/kvo/Matches.h"
#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using CommandLine = Program;

constexpr const char* kCommands[] = {"save", "publish", "inspect", "check", "new",
                                     "set",  "classes", "picture", "pages", "script"};

TEST_F(CommandLine, VersionNamesTheProgram) {
  const Result result = Kvo({"--version"});
  EXPECT_EQ(result.code, 0);
  EXPECT_FALSE(Matches(result.out, "^kvo 1\\.0\\.0( \\([0-9a-f]{7,}(-dirty)?\\))?\n$").empty())
      << result.out;
  EXPECT_EQ(result.err, "");
}

TEST_F(CommandLine, HelpListsEveryCommandWithExamples) {
  const Result result = Kvo({"--help"});
  EXPECT_EQ(result.code, 0);
  for (const char* command : kCommands)
    EXPECT_NE(result.out.find("\n  " + std::string(command) + ' '), std::string::npos) << command;
  EXPECT_NE(result.out.find("Examples:\n  kvo save"), std::string::npos);
}

TEST_F(CommandLine, EveryCommandExplainsItselfInBothLanguages) {
  for (const char* command : kCommands) {
    SCOPED_TRACE(command);
    const Result english = Kvo({command, "--help"});
    EXPECT_EQ(english.code, 0);
    EXPECT_EQ(english.out.find("Usage: kvo " + std::string(command)), 0U);
    EXPECT_NE(english.out.find("Examples:\n  kvo "), std::string::npos);
    const Result german = KvoGerman({command, "--help"});
    EXPECT_EQ(german.code, 0);
    EXPECT_EQ(german.out.find("Aufruf: kvo " + std::string(command)), 0U);
    EXPECT_NE(german.out.find("Beispiele:\n  kvo "), std::string::npos);
    for (const char* other : {"Bedienelement", "Steuerelement"})
      EXPECT_EQ(german.out.find(other), std::string::npos) << "the editor says \"Control\"";
    EXPECT_EQ(Kvo({"help", command}).out, english.out);
  }
}

TEST_F(CommandLine, LanguageFollowsTheFirstSetLocaleVariable) {
  EXPECT_EQ(Kvo({"--help"}, "", {{"LANG", "de_AT.UTF-8"}}).out.find("Aufruf"), 0U);
  EXPECT_EQ(Kvo({"--help"}, "", {{"LC_ALL", ""}, {"LANG", "de"}}).out.find("Aufruf"), 0U);
  EXPECT_EQ(Kvo({"--help"}, "", {{"LC_MESSAGES", "en_GB"}, {"LANG", "de_DE"}}).out.find("Usage"),
            0U);
  EXPECT_EQ(Kvo({"--help"}, "", {{"LC_ALL", "C"}, {"LANG", "de_DE"}}).out.find("Usage"), 0U);
  EXPECT_EQ(Kvo({"--help"}, "", {{"LANG", "del"}}).out.find("Usage"), 0U);
}

TEST_F(CommandLine, NoCommandIsWrongUseAndShowsTheHelp) {
  const Result result = Kvo({});
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find("Usage: kvo COMMAND"), std::string::npos);
}

TEST_F(CommandLine, UnknownCommandIsWrongUseWithASuggestion) {
  const Result result = Kvo({"inspekt", "x.html"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("Unknown command \"inspekt\". Did you mean \"inspect\"?"),
            std::string::npos)
      << result.err;
  EXPECT_NE(KvoGerman({"inspekt"}).err.find("Unbekannter Befehl „inspekt“. Meinten Sie „inspect“?"),
            std::string::npos);
}

TEST_F(CommandLine, UnknownOptionIsWrongUse) {
  const Result result = Kvo({"save", "--forse", "x.html"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("Unknown option \"--forse\""), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("kvo save --help"), std::string::npos) << result.err;
}

TEST_F(CommandLine, MissingArgumentIsNamed) {
  EXPECT_NE(Kvo({"save"}).err.find("PAGE is missing"), std::string::npos);
  EXPECT_NE(Kvo({"set", "x.html", "Preis"}).err.find("NAME=VALUE is missing"), std::string::npos);
  EXPECT_NE(KvoGerman({"inspect"}).err.find("PAGE fehlt"), std::string::npos);
  EXPECT_EQ(Kvo({"save"}).code, 2);
}

TEST_F(CommandLine, OptionWithoutItsValueIsNamed) {
  const Result result = Kvo({"save", "x.html", "-o"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("needs exactly one value"), std::string::npos) << result.err;
}

TEST_F(CommandLine, SurplusArgumentIsNamed) {
  const Result result = Kvo({"classes", "DTCPrint"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("\"DTCPrint\" is too much"), std::string::npos) << result.err;
}

TEST_F(CommandLine, ArgumentThatIsNotUtf8IsRefused) {
  for (const char* bytes :
       {"Value=\xE4", "Value=\xC0\x80", "Value=\xED\xA0\x80", "Value=\xE2\x82"}) {
    const Result result = Kvo({"new", "DTCPrint", bytes});
    EXPECT_EQ(result.code, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("Argument 3 is not valid UTF-8"), std::string::npos) << result.err;
  }
}

TEST_F(CommandLine, AnArgumentIsOneNameWhateverItLooksLike) {
  Write("a.html", PrintElement("a"));
  Write("b.html", PrintElement("b"));
  for (const char* name : {"[a.html]", "[a.html,b.html]", "{}", "[]", "]", "%%", "a,b",
                           "[[a.html]]", "[\"a.html\"]", " a.html", "'a.html'"}) {
    SCOPED_TRACE(name);
    Result missing = Kvo({"save", name});
    EXPECT_EQ(missing.code, 2);
    EXPECT_NE(missing.err.find('"' + std::string(name) + '"'), std::string::npos) << missing.err;
    missing = Kvo({"save", "b.html", "-o", std::string(name) + '/'});
    EXPECT_EQ(missing.code, 2) << missing.err;

    Write(name, PrintElement("x"));
    EXPECT_EQ(Kvo({"save", name}).code, 0);
    EXPECT_NE(Read(name).find("<kv:print value=\"x\"/>"), std::string::npos);
    EXPECT_EQ(Kvo({"publish", "a.html", "-o", name}).code, 0);
    EXPECT_EQ(Read(name), "<kv:print value=\"a\"/>");
    EXPECT_EQ(Kvo({"publish", "b.html", "--output=" + std::string(name)}).code, 0);
    EXPECT_EQ(Read(name), "<kv:print value=\"b\"/>");
    std::filesystem::remove(Folder() / "work" / name);

    EXPECT_NE(Kvo({"new", "DTCPrint", "Value=" + std::string(name), "--id", name}).out.find(" id="),
              std::string::npos);
    EXPECT_NE(Kvo({"new", name}).err.find('"' + std::string(name) + '"'), std::string::npos);
    EXPECT_NE(Kvo({"classes", name}).err.find('"' + std::string(name) + "\" is too much"),
              std::string::npos);
  }
  EXPECT_EQ(Kvo({"new", "DTCPrint", "Value=[a,b]"}).out,
            "<object classid=\"progid:KVOPDesignObjects.DTCPrint\"><param name=\"value\" "
            "value=\"[a,b]\"><param name=\"format\" value=\"\"></object>\n");
  EXPECT_EQ(Read("a.html"), PrintElement("a"));
  EXPECT_EQ(Read("b.html"), PrintElement("b"));
}

TEST_F(CommandLine, AnOptionsValueMustNotBeEmpty) {
  Write("x.html", PrintElement("x", "x"));
  Write("y.html", PrintElement("y", "y"));
  const std::vector<std::string> before = Files();
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{"save", "x.html", "-o", ""},
                                             {"save", "--output=", "x.html"},
                                             {"save", "x.html", "--output=", "y.html"},
                                             {"save", "-o", "", "x.html"},
                                             {"publish", "x.html", "-o", ""},
                                             {"set", "x.html", "x", "Value=y", "--output", ""},
                                             {"check", "x.html", "--office", ""},
                                             {"pages", "DTCPrint", "-o", ""},
                                             {"picture", "x.html", "-o", ""}}) {
    const Result result = Kvo(command);
    EXPECT_EQ(result.code, 2) << command[0];
    EXPECT_NE(result.err.find("not empty"), std::string::npos) << result.err;
    EXPECT_NE(KvoGerman(command).err.find("nicht leer"), std::string::npos);
  }
  EXPECT_EQ(Files(), before);
  EXPECT_EQ(Read("x.html"), PrintElement("x", "x"));
  EXPECT_EQ(Read("y.html"), PrintElement("y", "y"));
}

TEST_F(CommandLine, NothingIsColouredOutsideATerminal) {
  Write("x.html", "<object classid=\"progid:KVOPDesignObjects.DTCNone\"></object>");
  EXPECT_EQ(Kvo({"check", "x.html"}).out.find('\x1b'), std::string::npos);
  EXPECT_EQ(Kvo({"nothing"}).err.find('\x1b'), std::string::npos);
}

TEST_F(CommandLine, UnwritableOutputIsAFailure) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  Write("x.html", PrintElement("x"));
  const Result result = Kvo({"save", "x.html", "-o", "/dev/full"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err, "");
}

}  // namespace
}  // namespace kvo::test
