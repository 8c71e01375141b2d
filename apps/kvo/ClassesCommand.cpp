#include <array>

#include "apps/kvo/Commands.h"
#include "apps/kvo/Json.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

struct ClassesValues {
  bool json = false;
  bool markdown = false;
};

std::string_view TypeName(PropertyType type) {
  switch (type) {
    case PropertyType::text:
      return "text";
    case PropertyType::flag:
      return "flag";
    case PropertyType::integer:
      return "integer";
    case PropertyType::object:
      return "object";
  }
  return {};
}

std::string ProgId(const ControlClass& contract) {
  return std::string(kLibraryName) + '.' + std::string(contract.name);
}

// Returns the box before the first load, with its design-time captions.
Box DesignedBox(const ControlClass& contract) { return contract.create()->DesignTimeBox(); }

Json ClassJson(const RegisteredControl& registered) {
  const ControlClass& contract = registered.contract();
  Json properties = Json::array();
  for (const PropertyRow& row : contract.properties)
    properties.push_back({{"name", row.name}, {"id", row.id}, {"type", TypeName(row.type)}});
  Json keys = Json::array();
  for (const PropertyRow& row : contract.bag)
    keys.push_back({{"key", row.key},
                    {"readDefault", row.readDefault},
                    {"writeDefault", row.writeDefault ? Json(*row.writeDefault) : Json()},
                    {"alwaysStored", row.writeDefault == kAlwaysStored}});
  Json pages = Json::array();
  for (const std::string_view page : contract.pages) pages.push_back(page);
  return {{"name", contract.name},
          {"progId", ProgId(contract)},
          {"classId", registered.classId},
          {"properties", std::move(properties)},
          {"keys", std::move(keys)},
          {"pages", std::move(pages)},
          {"box", ToJson(DesignedBox(contract))}};
}

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string WriteDefaultText(const PropertyRow& row) {
  return row.writeDefault ? Quoted(*row.writeDefault)
                          : Say({"keine, immer gespeichert", "none, always stored"});
}

std::string ClassText(const RegisteredControl& registered) {
  const ControlClass& contract = registered.contract();
  std::string text = std::string(contract.name) + ' ' + std::string(registered.classId) + '\n';
  text += "  " + Say({"Eigenschaften", "properties"}) + '\n';
  for (const PropertyRow& row : contract.properties)
    text += "    " + Padded(std::to_string(row.id), 4) + Padded(std::string(row.name), 24) +
            std::string(TypeName(row.type)) + '\n';
  text += "  " +
          Say({"Schlüssel: Vorgabe beim Lesen, Vorgabe beim Schreiben",
               "keys: read default, write default"}) +
          '\n';
  for (const PropertyRow& row : contract.bag)
    text += "    " + Padded(std::string(row.key), 28) + Padded(Quoted(row.readDefault), 28) +
            WriteDefaultText(row) + '\n';
  text += "  " + Say({"Seiten", "pages"}) + '\n';
  for (const std::string_view page : contract.pages) text += "    " + std::string(page) + '\n';
  return text;
}

// Returns a row of a Markdown table.
std::string TableRow(std::initializer_list<std::string> cells) {
  std::string row = "|";
  for (const std::string& cell : cells) row += ' ' + cell + " |";
  return row + '\n';
}

// A text for people as a cell, in which a bar would end the cell.
std::string Cell(std::string_view text) {
  std::string cell;
  for (const char c : text) cell += c == '|' ? std::string("\\|") : std::string(1, c);
  return cell;
}

std::string Code(std::string_view text) { return '`' + std::string(text) + '`'; }

std::string DefaultCell(std::string_view text) { return text.empty() ? "empty" : Code(text); }

std::string ClassMarkdown(const RegisteredControl& registered) {
  const ControlClass& contract = registered.contract();
  std::string text = "\n## " + std::string(contract.name) + "\n\n" + "Class " +
                     Code("progid:" + ProgId(contract)) + ", " + Code(registered.classId) + ".\n\n";
  text += TableRow({"id", "property", "type", "caption", "meaning"}) + "|---|---|---|---|---|\n";
  for (const PropertyRow& row : contract.properties)
    text += TableRow({std::to_string(row.id), Code(row.name), std::string(TypeName(row.type)),
                      Cell(row.input.caption.english), Cell(row.input.help.english)});
  text += '\n' + TableRow({"key", "when absent", "not stored when"}) + "|---|---|---|\n";
  for (const PropertyRow& row : contract.bag)
    text += TableRow({Code(row.key), DefaultCell(row.readDefault),
                      row.writeDefault ? DefaultCell(*row.writeDefault) : "always stored"});
  text += "\nProperty pages:";
  const char* separator = " ";
  for (const std::string_view page : contract.pages) {
    text += separator + Code(page);
    separator = ", ";
  }
  if (contract.pages.empty()) text += " none";
  const Box box = DesignedBox(contract);
  text += ".\n\nDesign-time box, " + std::to_string(box.width) + " by " +
          std::to_string(box.height) + " twips as placed:";
  separator = " ";
  for (const Box::Label& label : box.labels) {
    text += separator + Code(label.name) + " " + Code(label.caption);
    separator = ", ";
  }
  return text + ".\n";
}

constexpr std::string_view kMarkdownHead =
    "# The controls\n\n"
    "Generated by `kvo classes --markdown`; a test compares it, so that it stays true.\n\n"
    "A control stands in a page as an `object` element with its class and one `param` for each key "
    "that is\nstored. Properties are what `kvo new`, `kvo set` and the property pages change; "
    "kvo-editor shows\ntheir captions, in German or English. A key that is absent from the page "
    "reads as the value in the\nsecond column; the value in the third column is left out when the "
    "page is saved. The two differ on\npurpose in places.\n";

ExitCode ListClasses(const ClassesValues& values) {
  if (values.json) {
    Json classes = Json::array();
    for (const RegisteredControl& control : RegisteredControls())
      classes.push_back(ClassJson(control));
    PrintJson({{"library", kLibraryName}, {"classes", std::move(classes)}});
    return ExitCode::good;
  }
  if (values.markdown) Print(kMarkdownHead);
  std::string_view separator;
  for (const RegisteredControl& control : RegisteredControls()) {
    Print(values.markdown ? ClassMarkdown(control) : std::string(separator) + ClassText(control));
    separator = "\n";
  }
  return ExitCode::good;
}

}  // namespace

void AddClassesCommand(CommandLine& line) {
  const auto values = std::make_shared<ClassesValues>();
  line.Add("classes",
           {"Zählt alle Klassen auf: Eigenschaften, Schlüssel, Vorgaben, Eigenschaftsseiten.",
            "Lists every class: properties, keys, defaults, property pages."},
           Both("kvo classes\nkvo classes --json | jq '.classes[].name'"))
      .Flag(
          "--json", values->json,
          {"ein JSON-Dokument, mit Nummern und Maßen", "one JSON document, with ids and measures"})
      .Flag("--markdown", values->markdown,
            {"als Seite der Dokumentation (englisch)", "as a page of documentation"})
      .Run([values] { return ListClasses(*values); });
}

}  // namespace kvo
