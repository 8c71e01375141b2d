// Writes the sources of the Windows component that are generated from the classes' tables:
//   kvo_com_sources DTCFramework        the type library of the interface to hosts
//   kvo_com_sources KVOPDesignObjects   the type library of the classes and their properties
//   kvo_com_sources toolbox             the toolbox bitmaps as resources
//   kvo_com_sources keys                for tests: the property that each key stores
// Runs on the build machine. The first two write interface definitions for widl.
#include <cctype>
#include <iostream>
#include <string>

#include "host/com/Resources.h"
#include "host/registration/classes.h"

namespace kvo {
namespace {

// Type libraries store help texts in the system's code page.
std::string Latin1(std::string_view utf8) {
  std::string out;
  for (std::size_t at = 0; at < utf8.size(); ++at) {
    const auto byte = static_cast<unsigned char>(utf8[at]);
    if (byte < 0x80 || at + 1 == utf8.size()) {
      out += utf8[at];
    } else {
      ++at;
      out += static_cast<char>(((byte & 0x03) << 6) | (utf8[at] & 0x3F));
    }
  }
  return out;
}

std::string Help(std::string_view text) { return "helpstring(\"" + Latin1(text) + "\")"; }

std::string Uuid(std::string_view registryForm) {
  return "uuid(" + std::string(registryForm.substr(1, registryForm.size() - 2)) + ")";
}

std::string_view IdlType(PropertyType type) {
  switch (type) {
    case PropertyType::text:
      return "BSTR";
    case PropertyType::flag:
      return "VARIANT_BOOL";
    case PropertyType::integer:
      return "long";
    case PropertyType::object:
      return "IDispatch*";
  }
  return {};
}

std::string ArgumentName(const PropertyRow& row) {
  std::string name(row.name);
  name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
  return std::string(row.argumentPrefix) + "New" + name;
}

std::string PropertyHelp(const PropertyRow& row) {
  if (row.key.empty()) return std::string(row.name);
  return "Gespeichert unter '" + std::string(row.key) + "', gelesen mit der Vorgabe '" +
         std::string(row.readDefault) + "'";
}

void WriteLibraryHead(std::ostream& out, const TypeLibraryId& library, std::string_view help) {
  out << "[" << Uuid(library.id) << ", version(" << library.major << "." << library.minor << "), "
      << Help(help) << "]\nlibrary " << library.name << "\n{\n  importlib(\"stdole2.tlb\");\n";
}

void WriteTypes(std::ostream& out) {
  // Declares the types of automation under the names that widl knows. The methods determine the
  // vtable offsets of the interface's own method.
  out << R"(typedef wchar_t* BSTR;
typedef short VARIANT_BOOL;
typedef long HRESULT;
[object, local, uuid(00000000-0000-0000-C000-000000000046), pointer_default(unique)]
interface IUnknown
{
  HRESULT QueryInterface([in] void* iid, [out] void** object);
  unsigned long AddRef();
  unsigned long Release();
};
[object, local, uuid(00020400-0000-0000-C000-000000000046), pointer_default(unique)]
interface IDispatch : IUnknown
{
  HRESULT GetTypeInfoCount([out] unsigned int* count);
  HRESULT GetTypeInfo([in] unsigned int index, [in] unsigned long locale, [out] void** info);
  HRESULT GetIDsOfNames([in] void* iid, [in] void* names, [in] unsigned int count,
                        [in] unsigned long locale, [out] long* members);
  HRESULT Invoke([in] long member, [in] void* iid, [in] unsigned long locale,
                 [in] unsigned short kind, [in] void* parameters, [out] void* result,
                 [out] void* exception, [out] unsigned int* wrongArgument);
};

)";
}

void WriteFramework(std::ostream& out) {
  WriteTypes(out);
  out << "[object, dual, oleautomation, " << Uuid(kRuntimeTextInterfaceId) << ",\n "
      << Help("Der Text, der beim Speichern an die Stelle des Controls tritt") << "]\ninterface "
      << kRuntimeTextInterface << " : IDispatch\n{\n  [id(" << kRuntimeTextId << "), "
      << Help("Der Laufzeittext") << "] HRESULT " << kRuntimeTextMethod
      << "([out, retval] BSTR* text);\n};\n\n";
  WriteLibraryHead(out, kFramework, "Vertrag zwischen Controls und ihrem Editor");
  out << "  interface " << kRuntimeTextInterface << ";\n};\n";
}

// Does not list IProvideRuntimeText among a class's interfaces, although controls implement it:
// widl would copy it from the other library and change this library's id.
void WriteControl(std::ostream& out, const RegisteredControl& registered) {
  const ControlClass& contract = registered.contract();
  const std::string help = Help(contract.description.german);
  out << "\n  [" << Uuid(registered.interfaceId) << ", " << help << "]\n  dispinterface _"
      << contract.name << "\n  {\n    properties:\n    methods:\n";
  for (const PropertyRow& row : contract.properties) {
    const std::string propertyHelp = Help(PropertyHelp(row));
    const std::string_view put = row.type == PropertyType::object ? "propputref" : "propput";
    out << "      [id(" << row.id << "), propget, " << propertyHelp << "] " << IdlType(row.type)
        << ' ' << row.name << "();\n      [id(" << row.id << "), " << put << ", " << propertyHelp
        << "] void " << row.name << "([in] " << IdlType(row.type) << ' ' << ArgumentName(row)
        << ");\n";
  }
  out << "      [id(" << kRuntimeTextId << "), " << Help("Der Laufzeittext") << "] BSTR "
      << kRuntimeTextMethod << "();\n  };\n";
  out << "\n  [" << Uuid(registered.classId) << ", control, " << help << "]\n  coclass "
      << contract.name << "\n  {\n    [default] dispinterface _" << contract.name << ";\n  };\n";
}

void WriteLibrary(std::ostream& out) {
  WriteTypes(out);
  WriteLibraryHead(out, kLibrary, "Controls für Newsletter-Vorlagen");
  for (const RegisteredControl& control : RegisteredControls()) WriteControl(out, control);
  for (const RegisteredPage& page : RegisteredPages())
    out << "\n  [" << Uuid(page.classId) << ", hidden, "
        << Help("Eigenschaftenseite: " + std::string(page.create()->Caption())) << "]\n  coclass "
        << page.name << "\n  {\n    [default] interface IUnknown;\n  };\n";
  out << "};\n";
}

// Writes a line for each key of each class: the class, the key, the property ("-" for none) and how
// the value is stored, separated by blanks. "as-is" is the value itself, "tokens" the token form of
// a text, and two words are those of a flag, the one for true first ("yes/no").
void WriteKeys(std::ostream& out) {
  for (const RegisteredControl& registered : RegisteredControls()) {
    const ControlClass& contract = registered.contract();
    for (const PropertyRow& row : contract.bag)
      out << contract.name << ' ' << row.key << ' ' << (row.id == 0 ? "-" : row.name) << ' '
          << row.codec.name << '\n';
  }
}

void WriteToolbox(std::ostream& out) {
  int number = com::kFirstToolboxBitmap;
  for (const RegisteredControl& control : RegisteredControls())
    out << number++ << " BITMAP \"host/com/toolbox/" << control.contract().name << ".bmp\"\n";
}

}  // namespace
}  // namespace kvo

int main(int count, char** arguments) {
  const std::string_view wanted = count == 2 ? arguments[1] : "";
  if (wanted == kvo::kFramework.name) {
    kvo::WriteFramework(std::cout);
  } else if (wanted == kvo::kLibrary.name) {
    kvo::WriteLibrary(std::cout);
  } else if (wanted == "toolbox") {
    kvo::WriteToolbox(std::cout);
  } else if (wanted == "keys") {
    kvo::WriteKeys(std::cout);
  } else {
    std::cerr << "kvo_com_sources " << kvo::kFramework.name << " | " << kvo::kLibrary.name
              << " | toolbox | keys\n";
    return 2;
  }
  return std::cout.flush() ? 0 : 2;
}
