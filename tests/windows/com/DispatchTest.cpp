#include <cstring>
#include <cwctype>

#include "tests/windows/com/Host.h"

namespace kvo::com {
namespace {

class Dispatch : public ModuleTest {};

DISPID IdOf(IDispatch* object, std::wstring name) {
  LPOLESTR names = name.data();
  DISPID member = 0;
  object->GetIDsOfNames(IID_NULL, &names, 1, 0, &member);
  return member;
}

TEST_F(Dispatch, KnowsEveryPropertyByItsFrozenId) {
  for (const RegisteredControl& registered : RegisteredControls()) {
    const ControlClass& contract = registered.contract();
    const auto control = Dll::Get().Make<IDispatch>(contract.name);
    for (const PropertyRow& row : contract.properties) {
      std::wstring name = ToWide(row.name);
      EXPECT_EQ(IdOf(control.get(), name), row.id);
      for (wchar_t& c : name) c = static_cast<wchar_t>(std::towupper(c));
      EXPECT_EQ(IdOf(control.get(), name), row.id);
    }
    EXPECT_EQ(IdOf(control.get(), L"getruntimetext"), kRuntimeTextId);
    EXPECT_EQ(IdOf(control.get(), L"Nowhere"), DISPID_UNKNOWN);
  }
}

// The type library has the same ids, and the types that are really returned.
TEST_F(Dispatch, IsDescribedByItsTypeLibrary) {
  for (const RegisteredControl& registered : RegisteredControls()) {
    const ControlClass& contract = registered.contract();
    SCOPED_TRACE(contract.name);
    const auto control = Dll::Get().Make<IDispatch>(contract.name);
    LoadDefaults(control.get());
    Pointer<ITypeInfo> info;
    ASSERT_EQ(control->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Receive()), S_OK);
    TYPEATTR* about = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&about), S_OK);
    EXPECT_EQ(about->typekind, TKIND_DISPATCH);
    EXPECT_EQ(about->cFuncs, 2 * contract.properties.size() + 1);
    EXPECT_EQ(GuidString(about->guid), ToWide(registered.interfaceId));
    info->ReleaseTypeAttr(about);
    for (const PropertyRow& row : contract.properties) {
      std::wstring name = ToWide(row.name);
      LPOLESTR names = name.data();
      MEMBERID member = 0;
      EXPECT_EQ(info->GetIDsOfNames(&names, 1, &member), S_OK);
      EXPECT_EQ(member, row.id) << row.name;
      Bstr help;
      EXPECT_EQ(info->GetDocumentation(member, nullptr, help.Receive(), nullptr, nullptr), S_OK);
      EXPECT_NE(help.Utf8(), "");
      DISPPARAMS none{};
      AutoVariant value;
      EXPECT_EQ(control->Invoke(member, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, value.get(),
                                nullptr, nullptr),
                S_OK);
      const VARTYPE type = (*value).vt;
      switch (row.type) {
        case PropertyType::text:
          EXPECT_EQ(type, VT_BSTR);
          break;
        case PropertyType::flag:
          EXPECT_EQ(type, VT_BOOL);
          break;
        case PropertyType::integer:
          EXPECT_EQ(type, VT_I4);
          break;
        case PropertyType::object:
          EXPECT_EQ(type, VT_DISPATCH);
          break;
      }
    }
    Pointer<ITypeInfo> coclass;
    ASSERT_EQ(Pointer<IProvideClassInfo2>::Query(control.get())->GetClassInfo(coclass.Receive()),
              S_OK);
    Bstr name;
    coclass->GetDocumentation(MEMBERID_NIL, name.Receive(), nullptr, nullptr, nullptr);
    EXPECT_EQ(name.Utf8(), contract.name);
  }
}

TEST_F(Dispatch, EmbeddedTypeLibrariesMatchThoseNextToTheModule) {
  const std::wstring folder = Dll::Get().Path().substr(0, Dll::Get().Path().find_last_of(L'\\'));
  const auto id = [](const std::wstring& path) {
    Pointer<ITypeLib> library;
    EXPECT_EQ(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Receive()), S_OK) << FromWide(path);
    TLIBATTR* about = nullptr;
    if (!library || FAILED(library->GetLibAttr(&about))) return std::wstring();
    const std::wstring text = GuidString(about->guid);
    library->ReleaseTLibAttr(about);
    return text;
  };
  EXPECT_EQ(id(Dll::Get().Path()), ToWide(kLibrary.id));
  EXPECT_EQ(id(Dll::Get().Path() + L"\\2"), ToWide(kFramework.id));
  EXPECT_EQ(id(folder + L"\\KVOPDesignObjects.tlb"), ToWide(kLibrary.id));
  EXPECT_EQ(id(folder + L"\\DTCFramework.tlb"), ToWide(kFramework.id));
}

TEST_F(Dispatch, TheRuntimeTextIsTheSameThroughEveryInterface) {
  const auto control = Dll::Get().Make<IDispatch>("DTCPrint");
  LoadDefaults(control.get());
  Late(control.get())->Let("VALUE", "a&b");
  const std::string expected = "<kv:print value=\"a&amp;b\"/>";
  EXPECT_EQ(RuntimeText(control.get()), expected);
  EXPECT_EQ(ToText(Late(control.get())->Call("GetRuntimeText", {})), expected);
  // Calls it through the type library's description of the dual interface.
  Pointer<ITypeLib> library;
  ASSERT_EQ(LoadTypeLibEx((Dll::Get().Path() + L"\\2").c_str(), REGKIND_NONE, library.Receive()),
            S_OK);
  Pointer<ITypeInfo> info;
  ASSERT_EQ(library->GetTypeInfoOfGuid(ToGuid(kRuntimeTextInterfaceId), info.Receive()), S_OK);
  DISPPARAMS none{};
  AutoVariant result;
  ASSERT_EQ(info->Invoke(AsRuntimeText(control.get()).get(), kRuntimeTextId, DISPATCH_METHOD, &none,
                         result.get(), nullptr, nullptr),
            S_OK);
  EXPECT_EQ(ToText(FromVariant(*result)), expected);
}

TEST_F(Dispatch, RunTimeErrorsAreReturnedAsNumbers) {
  const auto control = Dll::Get().Make<IDispatch>("DTCElement");
  LoadDefaults(control.get());
  AutoVariant text{Variant("vielleicht")};
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{text.get(), &named, 1, 1};
  EXCEPINFO exception;
  std::memset(&exception, 0xCC, sizeof exception);
  EXPECT_EQ(control->Invoke(IdOf(control.get(), L"OpeningTagOnly"), IID_NULL, 0,
                            DISPATCH_PROPERTYPUT, &parameters, nullptr, &exception, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(exception.scode, static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(exception.wCode, 0);
  EXPECT_EQ(FromWide(ViewBstr(exception.bstrSource)), "KVOPDesignObjects.DTCElement");
  EXPECT_EQ(FromWide(ViewBstr(exception.bstrDescription)), "Typen unverträglich: \"vielleicht\"");
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);

  Late(control.get())->Let("Value", "td");
  Late(control.get())->Let("Attributes", "nackt");
  BSTR runtime = PoisonedText();
  EXPECT_EQ(AsRuntimeText(control.get())->GetRuntimeText(&runtime),
            static_cast<HRESULT>(0x800A0009));
  EXPECT_EQ(runtime, nullptr);
}

TEST_F(Dispatch, OnlyObjectsAreAssignedByReference) {
  const auto control = Dll::Get().Make<IDispatch>("DTCContact");
  AutoVariant object{Variant(FromDispatch(Dll::Get().Make<IDispatch>("DTCPrint").get()))};
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{object.get(), &named, 1, 1};
  const auto put = [&](const wchar_t* name, WORD kind) {
    return control->Invoke(IdOf(control.get(), name), IID_NULL, 0, kind, &parameters, nullptr,
                           nullptr, nullptr);
  };
  EXPECT_EQ(put(L"Field", DISPATCH_PROPERTYPUTREF), DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(put(L"Office", DISPATCH_PROPERTYPUTREF), S_OK);
  EXPECT_EQ(put(L"Office", DISPATCH_PROPERTYPUT), S_OK);
  // Returns the assigned object itself, and releases it with the control.
  AutoVariant office{Late(control.get())->Get("Office")};
  EXPECT_EQ((*office).pdispVal, (*object).pdispVal);
}

TEST_F(Dispatch, ACollectionCanBeIndexedWhenRead) {
  const auto control = Dll::Get().Make<IDispatch>("DTCElement");
  Late(control.get())->Let("Attributes", "a|1||b|2");
  const Variant second = 2;
  EXPECT_EQ(ToText(Late(control.get())->Call("AttributesCollection", {&second, 1})), "b|2");
}

TEST_F(Dispatch, PropertiesAreMappedToTheirPages) {
  const auto control = Dll::Get().Make<IPerPropertyBrowsing>("DTCPrint");
  LoadDefaults(control.get());
  CLSID page{};
  EXPECT_EQ(control->MapPropertyToPage(4, &page), S_OK);
  EXPECT_EQ(PageName(page), "propPrintGeneral");
  EXPECT_EQ(control->MapPropertyToPage(6, &page), S_OK);
  EXPECT_EQ(PageName(page), "propGeneralFormat");
  EXPECT_EQ(control->MapPropertyToPage(1, &page), PERPROP_E_NOPAGEAVAILABLE);
  EXPECT_EQ(page, CLSID_NULL);
  Bstr shown;
  Late(control.get())->Let("Value", "#order.total#");
  EXPECT_EQ(control->GetDisplayString(4, shown.Receive()), S_OK);
  EXPECT_EQ(shown.Utf8(), "#order.total#");
  // Does not fill the page of the shop's products: this list has no shop.
  const auto list = Dll::Get().Make<IPerPropertyBrowsing>("DTCProductList");
  EXPECT_EQ(list->MapPropertyToPage(6, &page), S_OK);
  EXPECT_EQ(PageName(page), "propProdListPicker");
  // An object property has no page, even if a page reads it.
  EXPECT_EQ(list->MapPropertyToPage(20, &page), PERPROP_E_NOPAGEAVAILABLE);
}

}  // namespace
}  // namespace kvo::com
