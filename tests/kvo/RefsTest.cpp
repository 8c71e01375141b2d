#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/kvo/Program.h"

namespace kvo::test {
namespace {

using Json = nlohmann::ordered_json;

std::string NamedContact(const std::string& field) {
  return ControlElement("DTCContact", {{"field", field}}, "Ort");
}

class RefsCommand : public Program {
 protected:
  RefsCommand() {
    std::filesystem::create_directories(Folder() / "work/mails/old");
    Write("mails/a.html", "<p>" + NamedContact("City") + "\n#customer.City# #customer.city#</p>\n");
    Write("mails/old/b.htm", PrintElement("#customer.City#", "City"));
  }
};
using RenameCommand = RefsCommand;

TEST_F(RefsCommand, ListsEveryUseWithItsPlace) {
  const Result result = Kvo({"refs", "customer.City", "mails"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "mails/a.html:1:94: field: DTCContact \"Ort\": Field: City\n"
            "mails/a.html:2:11: expression: #customer.City# #customer.city#</p>\n"
            "mails/old/b.htm:1:100: expression: DTCPrint \"City\": Value: #customer.City#\n");
  EXPECT_EQ(result.err,
            "kvo: \"customer.city\" is used, too (1); it differs in upper and lower case alone.\n");
  EXPECT_NE(KvoGerman({"refs", "customer.City", "mails"}).out.find(": Ausdruck: "),
            std::string::npos);
}

TEST_F(RefsCommand, FindsIdsAndClasses) {
  EXPECT_EQ(Kvo({"refs", "Ort", "mails"}).out,
            "mails/a.html:1:62: id: DTCContact \"Ort\": id: Ort\n");
  EXPECT_EQ(Kvo({"refs", "DTCPrint", "mails"}).out,
            "mails/old/b.htm:1:18: class: DTCPrint \"City\": classid: "
            "progid:KVOPDesignObjects.DTCPrint\n");
}

TEST_F(RefsCommand, SuggestsANameWhereNothingIsFound) {
  const Result result = Kvo({"refs", "customer.Citi", "mails"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "kvo: \"customer.Citi\" is used nowhere. Did you mean \"customer.City\"?\n");
  EXPECT_EQ(KvoGerman({"refs", "order.Total", "-"}, "x").err,
            "kvo: \"order.Total\" kommt nirgends vor.\n");
}

TEST_F(RefsCommand, PrintsJson) {
  const Result result = Kvo({"refs", "customer.City", "--json", "-"}, "\n#customer.City#");
  EXPECT_EQ(Json::parse(result.out)["uses"], Json::parse(R"([{"file": "<stdin>", "line": 2,
    "column": 11, "kind": "path", "name": "customer.City", "class": "", "id": "", "property": "",
    "text": "#customer.City#"}])"));
  EXPECT_EQ(Json::parse(Kvo({"refs", "x", "--json", "-"}, "").out)["uses"], Json::array());
  EXPECT_EQ(Kvo({"refs", "x", "none.html"}).code, 2);
}

TEST_F(RenameCommand, WritesAllPages) {
  const std::string before = Read("mails/a.html");
  const Result result = Kvo({"rename", "customer.City", "customer.Town", "mails"});
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out, "Renamed 3 places in 2 pages.\n");
  EXPECT_EQ(Read("mails/a.html"),
            "<p>" + NamedContact("Town") + "\n#customer.Town# #customer.city#</p>\n");
  EXPECT_EQ(Read("mails/old/b.htm"), PrintElement("#customer.Town#", "City"));
  EXPECT_EQ(KvoGerman({"rename", "customer.Town", "customer.City", "mails/a.html"}).out,
            "Umbenannt: 2 Stellen in 1 Seite.\n");
  EXPECT_EQ(Read("mails/a.html"), before);
}

TEST_F(RenameCommand, ShowsADiffThatAppliesOnARun) {
  Write("office.json",
        R"({"contactFields":[{"sqlName":"City","displayName":"Ort","dataType":0}]})");
  const std::vector<std::string> rename = {"rename", "customer.City", "customer.Town",
                                           "mails",  "--office",      "office.json"};
  const std::string before = Read("mails/a.html");
  std::vector<std::string> dry = rename;
  dry.emplace_back("--dry-run");
  const Result result = Kvo(dry);
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(Read("mails/a.html"), before);
  Write("x.diff", result.out);
  const std::string patch = "cd '" + (Folder() / "work").string() +
                            "' && cp -r mails office.json was && patch -s -p1 <x.diff";
  std::filesystem::create_directory(Folder() / "work/was");
  ASSERT_EQ(std::system(patch.c_str()), 0) << result.out;
  const std::string patched = Read("mails/a.html");
  EXPECT_NE(patched, before);
  const std::string office = Read("office.json");
  EXPECT_EQ(office, R"({"contactFields":[{"sqlName":"Town","displayName":"Ort","dataType":0}]})");

  Write("mails/a.html", before);
  Write("mails/old/b.htm", Read("was/mails/old/b.htm"));
  Write("office.json", Read("was/office.json"));
  EXPECT_EQ(Kvo(rename).code, 0);
  EXPECT_EQ(Read("mails/a.html"), patched);
  EXPECT_EQ(Read("office.json"), office);
  // The office is done already; that is no reason to fail.
  EXPECT_EQ(
      Kvo({"rename", "customer.city", "customer.Town", "mails", "--office", "office.json"}).code,
      0);
}

TEST_F(RenameCommand, WritesNothingWhereOnePlaceCannotBeRenamed) {
  Write("mails/old/b.htm", ControlElement("DTCIf", {{"test", "#customer.City#"}, {"x", ""}}, "W"));
  const std::string before = Read("mails/a.html");
  const Result result = Kvo({"rename", "customer.City", "customer.Town", "mails"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(Read("mails/a.html"), before);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find("mails/old/b.htm:1:93: error: The control has errors."),
            std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("Nothing was renamed"), std::string::npos) << result.err;
  const Result dry = Kvo({"rename", "customer.City", "customer.Town", "mails", "--dry-run"});
  EXPECT_EQ(dry.code, 1);
  EXPECT_EQ(dry.out, "");
  EXPECT_NE(dry.err.find("Nothing would be renamed"), std::string::npos) << dry.err;
  EXPECT_EQ(Kvo({"rename", "customer.City", "customer.Town", "mails/a.html", "none.html"}).code, 2);
  EXPECT_EQ(Read("mails/a.html"), before);
}

TEST_F(RenameCommand, RenamesTheRestWithPartly) {
  const std::string broken =
      ControlElement("DTCIf", {{"test", "#customer.City#"}, {"x", "#customer.City#"}}, "W");
  Write("mails/b.html", "<p>#customer.City#</p>" + broken + "<meta charset=shift_jis>");
  Write("mails/c.html", "#customer.City#\n" + broken);
  const std::vector<std::string> rename = {"rename", "customer.City", "customer.Town", "mails",
                                           "--partly"};
  std::vector<std::string> dry = rename;
  dry.emplace_back("--dry-run");
  for (const std::vector<std::string>& arguments : {dry, rename}) {
    const Result result = Kvo(arguments);
    EXPECT_EQ(result.code, 1);
    std::size_t at = 0;
    for (const std::string_view each :
         {"mails/b.html:1:14: error: ", "mails/b.html:1:115: error: ",
          "mails/b.html:1:155: error: ", "mails/c.html:2:93: error: The control has errors.",
          "mails/c.html:2:133: error: ", "Still with the old name: 5 places."}) {
      at = result.err.find(each, at);
      EXPECT_NE(at, std::string::npos) << each << '\n' << result.err;
    }
    EXPECT_EQ(result.err.find("Nothing"), std::string::npos) << result.err;
    if (arguments == dry)
      EXPECT_NE(result.out.find("+#customer.Town#\n"), std::string::npos) << result.out;
    else
      EXPECT_EQ(result.out, "Renamed 4 places in 3 pages.\n");
  }
  EXPECT_EQ(Read("mails/c.html"), "#customer.Town#\n" + broken);
  EXPECT_EQ(Read("mails/old/b.htm"), PrintElement("#customer.Town#", "City"));
  EXPECT_EQ(
      Kvo({"rename", "customer.Town", "customer.City", "mails/c.html", "none.html", "--partly"})
          .code,
      2);
  EXPECT_EQ(Read("mails/c.html"), "#customer.City#\n" + broken);
}

TEST_F(RenameCommand, WarnsWhereTwoNamesBecomeOne) {
  const Result result = Kvo({"rename", "customer.City", "customer.city", "mails/a.html"});
  EXPECT_EQ(result.code, 0);
  EXPECT_NE(result.err.find("mails/a.html:2:27: warning: \"customer.city\" is used here already"),
            std::string::npos)
      << result.err;
}

TEST_F(RenameCommand, NamesFilesBesideThatHaveTheOldName) {
  Write("mails/office.json",
        R"({"contactFields":[{"sqlName":"City","displayName":"","dataType":0}]})");
  Write("mails/preview.json", R"({"records":[{"name":"Anna","customer":{"City":"Kiel"}}]})");
  const Result result = Kvo({"rename", "customer.City", "customer.Town", "mails"});
  EXPECT_EQ(
      result.err,
      "kvo: \"customer.city\" is used, too (1); it differs in upper and lower case alone.\n"
      "kvo: mails/office.json still lists the field \"customer.City\". With --office, it is "
      "renamed there, too.\n"
      "kvo: mails/preview.json still has values for \"customer.City\". With --office, they are "
      "renamed there, too.\n");
}

class RenameRecords : public RenameCommand {
 protected:
  RenameRecords() {
    Write("mails/office.json",
          R"({"contactFields":[{"sqlName":"City","displayName":"","dataType":0}]})");
    Write("mails/preview.json",
          "{\"records\" : [{\"customer\":{\"City\":\"City\"}}],\"query\":\"SELECT city\"}");
    Write("mails/old/preview.json", "{\"records\":[{\"customer\":{\"city\" : null}}]}\r\n");
  }
  const std::vector<std::string> rename_ = {
      "rename",         "customer.City", "customer.Town",    "mails",
      "./mails/a.html", "--office",      "mails/office.json"};
};

TEST_F(RenameRecords, WithTheOffice) {
  const Result result = Kvo(rename_);
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out,
            "Renamed 3 places in 2 pages.\n"
            "The values in mails/preview.json are called \"customer.Town\" now, too.\n"
            "The values in mails/old/preview.json are called \"customer.Town\" now, too.\n");
  EXPECT_NE(result.err.find("The query in mails/preview.json may name \"customer.City\"."),
            std::string::npos)
      << result.err;
  EXPECT_EQ(Read("mails/preview.json"),
            "{\"records\" : [{\"customer\":{\"Town\":\"City\"}}],\"query\":\"SELECT city\"}");
  EXPECT_EQ(Read("mails/old/preview.json"), "{\"records\":[{\"customer\":{\"Town\" : null}}]}\r\n");
}

TEST_F(RenameRecords, WithAQueryOfOtherColumns) {
  Write("mails/old/preview.json", "{\"query\":\"SELECT CityCode, Capa\"}");
  EXPECT_EQ(Kvo(rename_).err.find("The query in mails/old/preview.json"), std::string::npos);
}

TEST_F(RenameRecords, AppearInTheDiff) {
  std::vector<std::string> dry = rename_;
  dry.emplace_back("--dry-run");
  const Result result = Kvo(dry);
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_NE(result.out.find("+++ b/mails/old/preview.json"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("+{\"records\" : [{\"customer\":{\"Town\""), std::string::npos);
  EXPECT_NE(Read("mails/preview.json").find("\"City\":\"City\""), std::string::npos);
}

TEST_F(RenameRecords, AllOrNothingWithThePages) {
  const std::string page = Read("mails/a.html");
  const std::string records = Read("mails/preview.json");
  const std::string both = R"({"records":[{"customer":{"City":"1","Town":"2"}}]})";
  Write("mails/old/preview.json", both);
  std::vector<std::string> partly = rename_;
  partly.emplace_back("--partly");
  const std::string why =
      "mails/old/preview.json:1:26: error: records[0].customer: the record has values of both "
      "names, \"City\" and \"Town\". Delete one.\n";
  Result result = Kvo(rename_);
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find(why), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("Nothing was renamed"), std::string::npos) << result.err;
  EXPECT_EQ(Read("mails/a.html"), page);
  EXPECT_EQ(Read("mails/preview.json"), records);

  result = Kvo(partly);
  EXPECT_EQ(result.code, 1);
  EXPECT_NE(result.err.find(why), std::string::npos) << result.err;
  EXPECT_NE(Read("mails/a.html"), page);
  EXPECT_NE(Read("mails/preview.json"), records);
  EXPECT_EQ(Read("mails/old/preview.json"), both);
}

TEST_F(RenameCommand, RefusesWrongUse) {
  const auto refused = [this](const std::vector<std::string>& arguments) {
    const Result result = Kvo(arguments);
    EXPECT_EQ(result.code, 2) << result.out;
    EXPECT_EQ(result.out, "");
    return result.err;
  };
  EXPECT_NE(refused({"rename", "DTCPrint", "DTCIf", "mails"}).find("classes cannot"),
            std::string::npos);
  EXPECT_NE(refused({"rename", "customer.City", "order.City", "mails"}).find("stays in its group"),
            std::string::npos);
  EXPECT_NE(refused({"rename", "Ort", "Stadt", "mails", "--office", "o.json"}).find("An id is not"),
            std::string::npos);
  EXPECT_NE(refused({"rename", "Ort", "Stadt", "-"}).find("standard input"), std::string::npos);
  Write("o.json", "{}");
  EXPECT_NE(refused({"rename", "customer.City", "customer.Town", "mails", "--office", "o.json"})
                .find("lists no field"),
            std::string::npos);
  Write("o.json", R"({"contactFields":[{"sqlName":"City","displayName":"","dataType":0},
                                       {"sqlName":"Town","displayName":"","dataType":0}]})");
  EXPECT_NE(refused({"rename", "customer.City", "customer.Town", "mails", "--office", "o.json"})
                .find("lists both fields"),
            std::string::npos);
}

TEST_F(RenameCommand, SaysWhenTheNameIsUsedNowhere) {
  const Result result = Kvo({"rename", "customer.Citi", "customer.Town", "mails"});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "kvo: \"customer.Citi\" is used nowhere. Did you mean \"customer.City\"?\n");
}

}  // namespace
}  // namespace kvo::test
