// COM rules for every method: wrong requests fail as required, and every out parameter is set.
#include <cstring>
#include <functional>
#include <type_traits>

#include "tests/windows/com/Host.h"

namespace kvo::com {
namespace {

constexpr GUID kNobodys = {0xDEADBEEF, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

std::vector<IID> ControlInterfaces(std::string_view className) {
  return {IID_IUnknown,
          IID_IDispatch,
          ToGuid(kRuntimeTextInterfaceId),
          ToGuid(FindControlByName(className)->interfaceId),
          IID_IProvideClassInfo,
          IID_IProvideClassInfo2,
          IID_IPersist,
          IID_IPersistPropertyBag,
          IID_IPersistStreamInit,
          IID_IOleObject,
          IID_IOleControl,
          IID_IOleWindow,
          IID_IOleInPlaceObject,
          IID_IOleInPlaceActiveObject,
          IID_IViewObject,
          IID_IViewObject2,
          IID_ISpecifyPropertyPages,
          IID_IPerPropertyBrowsing,
          IID_IConnectionPointContainer,
          IID_ISupportErrorInfo};
}

class EveryControl : public ModuleTest, public testing::WithParamInterface<std::string> {
 protected:
  template <class T>
  Pointer<T> Make() const {
    return Dll::Get().Make<T>(GetParam());
  }
};

TEST_P(EveryControl, HasOneIdentityForAllItsInterfaces) {
  const auto object = Make<IUnknown>();
  for (const IID& first : ControlInterfaces(GetParam())) {
    SCOPED_TRACE(FromWide(GuidString(first)));
    Pointer<IUnknown> part;
    ASSERT_EQ(object->QueryInterface(first, reinterpret_cast<void**>(part.Receive())), S_OK);
    EXPECT_EQ(Pointer<IUnknown>::Query(part.get()).get(), object.get());
    for (const IID& second : ControlInterfaces(GetParam())) {
      Pointer<IUnknown> other;
      EXPECT_EQ(part->QueryInterface(second, reinterpret_cast<void**>(other.Receive())), S_OK);
    }
    IUnknown* none = Poisoned<IUnknown>();
    EXPECT_EQ(part->QueryInterface(kNobodys, reinterpret_cast<void**>(&none)), E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(part->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
  }
}

// Makes a call with poisoned out parameters and checks that it set them all.
struct OutCall {
  const char* name;
  std::function<HRESULT()> withNull;
  std::function<bool()> clears;
};

template <class T, class Call>
OutCall Out(const char* name, Call call) {
  return {name, [call] { return call(static_cast<T*>(nullptr)); },
          [call] {
            T out{};
            std::memset(static_cast<void*>(&out), 0xCC, sizeof out);
            T poison = out;
            const HRESULT code = call(&out);
            const bool set = std::memcmp(&out, &poison, sizeof out) != 0;
            // Releases what was returned.
            if constexpr (std::is_pointer_v<T>) {
              using Pointed = std::remove_pointer_t<T>;
              if constexpr (std::is_base_of_v<IUnknown, Pointed>)
                if (set && out != nullptr) out->Release();
            }
            const T empty{};
            return set && (SUCCEEDED(code) || std::memcmp(&out, &empty, sizeof out) == 0);
          }};
}

TEST_P(EveryControl, SetsEveryOutParameter) {
  const auto dispatch = Make<IDispatch>();
  const auto text = AsRuntimeText(dispatch.get());
  const auto info = Pointer<IProvideClassInfo2>::Query(dispatch.get());
  const auto points = Pointer<IConnectionPointContainer>::Query(dispatch.get());
  const auto bag = Pointer<IPersistPropertyBag>::Query(dispatch.get());
  const auto stream = Pointer<IPersistStreamInit>::Query(dispatch.get());
  const auto ole = Pointer<IOleObject>::Query(dispatch.get());
  const auto window = Pointer<IOleInPlaceObject>::Query(dispatch.get());
  const auto view = Pointer<IViewObject2>::Query(dispatch.get());
  const auto browsing = Pointer<IPerPropertyBrowsing>::Query(dispatch.get());
  Pointer<IConnectionPoint> point;
  ASSERT_EQ(points->FindConnectionPoint(IID_IPropertyNotifySink, point.Receive()), S_OK);

  const OutCall calls[] = {
      Out<UINT>("GetTypeInfoCount", [&](UINT* out) { return dispatch->GetTypeInfoCount(out); }),
      Out<ITypeInfo*>("GetTypeInfo",
                      [&](ITypeInfo** out) { return dispatch->GetTypeInfo(0, 0, out); }),
      Out<ITypeInfo*>("GetTypeInfo of an unknown one",
                      [&](ITypeInfo** out) { return dispatch->GetTypeInfo(1, 0, out); }),
      Out<ITypeInfo*>("GetClassInfo", [&](ITypeInfo** out) { return info->GetClassInfo(out); }),
      Out<GUID>("GetGUID",
                [&](GUID* out) { return info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, out); }),
      Out<GUID>("GetGUID of an unknown kind", [&](GUID* out) { return info->GetGUID(99, out); }),
      Out<IEnumConnectionPoints*>(
          "EnumConnectionPoints",
          [&](IEnumConnectionPoints** out) { return points->EnumConnectionPoints(out); }),
      Out<IConnectionPoint*>("FindConnectionPoint",
                             [&](IConnectionPoint** out) {
                               return points->FindConnectionPoint(IID_IPropertyNotifySink, out);
                             }),
      Out<IConnectionPoint*>(
          "FindConnectionPoint of an unknown one",
          [&](IConnectionPoint** out) { return points->FindConnectionPoint(kNobodys, out); }),
      Out<IID>("GetConnectionInterface",
               [&](IID* out) { return point->GetConnectionInterface(out); }),
      Out<IConnectionPointContainer*>(
          "GetConnectionPointContainer",
          [&](IConnectionPointContainer** out) { return point->GetConnectionPointContainer(out); }),
      Out<IEnumConnections*>("EnumConnections",
                             [&](IEnumConnections** out) { return point->EnumConnections(out); }),
      Out<CLSID>("GetClassID", [&](CLSID* out) { return bag->GetClassID(out); }),
      Out<CLSID>("GetClassID of the stream", [&](CLSID* out) { return stream->GetClassID(out); }),
      Out<ULARGE_INTEGER>("GetSizeMax",
                          [&](ULARGE_INTEGER* out) { return stream->GetSizeMax(out); }),
      Out<IOleClientSite*>("GetClientSite",
                           [&](IOleClientSite** out) { return ole->GetClientSite(out); }),
      Out<IMoniker*>("GetMoniker", [&](IMoniker** out) { return ole->GetMoniker(1, 1, out); }),
      Out<IDataObject*>("GetClipboardData",
                        [&](IDataObject** out) { return ole->GetClipboardData(0, out); }),
      Out<IEnumOLEVERB*>("EnumVerbs", [&](IEnumOLEVERB** out) { return ole->EnumVerbs(out); }),
      Out<CLSID>("GetUserClassID", [&](CLSID* out) { return ole->GetUserClassID(out); }),
      Out<SIZEL>("GetExtent", [&](SIZEL* out) { return ole->GetExtent(DVASPECT_CONTENT, out); }),
      Out<SIZEL>("GetExtent of an icon",
                 [&](SIZEL* out) { return ole->GetExtent(DVASPECT_ICON, out); }),
      Out<IEnumSTATDATA*>("EnumAdvise", [&](IEnumSTATDATA** out) { return ole->EnumAdvise(out); }),
      Out<DWORD>("GetMiscStatus",
                 [&](DWORD* out) { return ole->GetMiscStatus(DVASPECT_CONTENT, out); }),
      Out<DWORD>("GetMiscStatus of an icon",
                 [&](DWORD* out) { return ole->GetMiscStatus(DVASPECT_ICON, out); }),
      Out<DWORD>("Advise with null", [&](DWORD* out) { return ole->Advise(nullptr, out); }),
      Out<DWORD>("Advise of the connection point with null",
                 [&](DWORD* out) { return point->Advise(nullptr, out); }),
      Out<HWND>("GetWindow", [&](HWND* out) { return window->GetWindow(out); }),
      Out<LOGPALETTE*>("GetColorSet",
                       [&](LOGPALETTE** out) {
                         return view->GetColorSet(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr,
                                                  out);
                       }),
      Out<DWORD>("Freeze",
                 [&](DWORD* out) { return view->Freeze(DVASPECT_CONTENT, -1, nullptr, out); }),
      Out<SIZEL>("GetExtent of the view",
                 [&](SIZEL* out) { return view->GetExtent(DVASPECT_CONTENT, -1, nullptr, out); }),
      Out<SIZEL>("GetExtent of a part of the view",
                 [&](SIZEL* out) { return view->GetExtent(DVASPECT_CONTENT, 3, nullptr, out); }),
      Out<CLSID>("MapPropertyToPage of an unknown property",
                 [&](CLSID* out) { return browsing->MapPropertyToPage(4711, out); }),
      Out<CLSID>("MapPropertyToPage",
                 [&](CLSID* out) { return browsing->MapPropertyToPage(1, out); }),
      Out<BSTR>("GetDisplayString of an unknown property",
                [&](BSTR* out) { return browsing->GetDisplayString(4711, out); }),
      Out<VARIANT>("GetPredefinedValue",
                   [&](VARIANT* out) { return browsing->GetPredefinedValue(1, 0, out); }),
  };
  for (const OutCall& call : calls) {
    SCOPED_TRACE(call.name);
    EXPECT_EQ(call.withNull(), E_POINTER);
    EXPECT_TRUE(call.clears());
  }

  // The methods that return memory.
  BSTR runtime = PoisonedText();
  EXPECT_EQ(text->GetRuntimeText(nullptr), E_POINTER);
  EXPECT_EQ(text->GetRuntimeText(&runtime), S_OK);
  EXPECT_NE(runtime, PoisonedText());
  SysFreeString(runtime);
  BSTR shown = PoisonedText();
  EXPECT_EQ(browsing->GetDisplayString(1, nullptr), E_POINTER);
  EXPECT_EQ(browsing->GetDisplayString(1, &shown), S_OK);
  EXPECT_NE(shown, PoisonedText());
  SysFreeString(shown);
  LPOLESTR name = Poisoned<wchar_t>();
  EXPECT_EQ(ole->GetUserType(USERCLASSTYPE_FULL, nullptr), E_POINTER);
  EXPECT_EQ(ole->GetUserType(USERCLASSTYPE_FULL, &name), S_OK);
  EXPECT_NE(name, Poisoned<wchar_t>());
  CoTaskMemFree(name);
  CAUUID pages = {0xCC, Poisoned<GUID>()};
  const auto specify = Pointer<ISpecifyPropertyPages>::Query(dispatch.get());
  EXPECT_EQ(specify->GetPages(nullptr), E_POINTER);
  EXPECT_EQ(specify->GetPages(&pages), S_OK);
  EXPECT_EQ(pages.cElems, FindControlByName(GetParam())->contract().pages.size());
  CoTaskMemFree(pages.pElems);
  CALPOLESTR texts = {0xCC, Poisoned<LPOLESTR>()};
  CADWORD cookies = {0xCC, Poisoned<DWORD>()};
  EXPECT_EQ(browsing->GetPredefinedStrings(1, nullptr, &cookies), E_POINTER);
  EXPECT_EQ(browsing->GetPredefinedStrings(1, &texts, &cookies), E_NOTIMPL);
  EXPECT_EQ(texts.pElems, nullptr);
  EXPECT_EQ(cookies.pElems, nullptr);
}

TEST_P(EveryControl, RefusesNullForRequiredPointers) {
  const auto bag = Make<IPersistPropertyBag>();
  const auto stream = Pointer<IPersistStreamInit>::Query(bag.get());
  const auto ole = Pointer<IOleObject>::Query(bag.get());
  const auto control = Pointer<IOleControl>::Query(bag.get());
  const auto inPlace = Pointer<IOleInPlaceObject>::Query(bag.get());
  const auto view = Pointer<IViewObject2>::Query(bag.get());
  const auto dispatch = Pointer<IDispatch>::Query(bag.get());
  EXPECT_EQ(bag->Load(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(bag->Save(nullptr, TRUE, TRUE), E_POINTER);
  EXPECT_EQ(stream->Load(nullptr), E_POINTER);
  EXPECT_EQ(stream->Save(nullptr, TRUE), E_POINTER);
  EXPECT_EQ(ole->SetExtent(DVASPECT_CONTENT, nullptr), E_POINTER);
  EXPECT_EQ(control->GetControlInfo(nullptr), E_POINTER);
  EXPECT_EQ(inPlace->SetObjectRects(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, 0),
            E_INVALIDARG);
  EXPECT_EQ(view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, 0),
            DV_E_DVASPECT);
  EXPECT_EQ(view->GetAdvise(nullptr, nullptr, nullptr), S_OK);  // each is optional
  EXPECT_EQ(
      dispatch->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, nullptr, nullptr, nullptr),
      E_POINTER);
  DISPPARAMS none{};
  EXPECT_EQ(
      dispatch->Invoke(1, IID_IUnknown, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr),
      DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(
      dispatch->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr),
      S_OK);
  EXPECT_EQ(
      dispatch->Invoke(4711, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr),
      DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(
      dispatch->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYPUT, &none, nullptr, nullptr, nullptr),
      DISP_E_BADPARAMCOUNT);
  DISPID member = 7;
  LPOLESTR nothing = nullptr;
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, &nothing, 1, 0, nullptr), E_POINTER);
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &member), E_POINTER);
  EXPECT_EQ(member, DISPID_UNKNOWN);
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_IUnknown, &nothing, 1, 0, &member),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, &nothing, 1, 0, &member), E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(Contract, EveryControl, testing::ValuesIn(ControlNames()), ParameterName);

class TheModule : public ModuleTest {};

TEST_F(TheModule, HasFactoriesOnlyForItsOwnClasses) {
  IUnknown* none = Poisoned<IUnknown>();
  EXPECT_EQ(Dll::Get().GetClassObject(kNobodys, IID_IClassFactory, reinterpret_cast<void**>(&none)),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(Dll::Get().GetClassObject(ClassIdOf("DTCPrint"), IID_IClassFactory, nullptr),
            E_POINTER);
  none = Poisoned<IUnknown>();
  EXPECT_EQ(Dll::Get().GetClassObject(ClassIdOf("DTCPrint"), IID_IDispatch,
                                      reinterpret_cast<void**>(&none)),
            E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);

  const auto factory = Dll::Get().Factory("DTCPrint");
  none = Poisoned<IUnknown>();
  EXPECT_EQ(factory->CreateInstance(nullptr, kNobodys, reinterpret_cast<void**>(&none)),
            E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(TheModule, StaysLoadedWhileAServerIsLocked) {
  auto factory = Dll::Get().Factory("DTCPrint");
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  factory = {};
  EXPECT_FALSE(Dll::Get().CanUnload());
  Dll::Get().Factory("DTCPrint")->LockServer(FALSE);
  EXPECT_TRUE(Dll::Get().CanUnload());
}

// An object that aggregates a control, as some hosts' extenders do.
class Aggregate final : public OnStack<IUnknown> {
 public:
  Pointer<IUnknown> inner;

 private:
  void* Further(REFIID iid) override {
    if (!inner) return nullptr;
    IUnknown* part = nullptr;
    if (FAILED(inner->QueryInterface(iid, reinterpret_cast<void**>(&part)))) return nullptr;
    part->Release();  // already counted by the aggregate's QueryInterface
    return part;
  }
};

TEST_F(TheModule, AllowsAggregatingControls) {
  Aggregate outer;
  IDispatch* refused = Poisoned<IDispatch>();
  EXPECT_EQ(Dll::Get()
                .Factory("DTCPrint")
                ->CreateInstance(&outer, IID_IDispatch, reinterpret_cast<void**>(&refused)),
            CLASS_E_NOAGGREGATION);
  EXPECT_EQ(refused, nullptr);

  outer.inner = Dll::Get().Make<IUnknown>("DTCPrint", &outer);
  ASSERT_TRUE(outer.inner);
  {
    const auto dispatch = Pointer<IDispatch>::Query(static_cast<IUnknown*>(&outer));
    ASSERT_TRUE(dispatch);
    EXPECT_EQ(Pointer<IUnknown>::Query(dispatch.get()).get(), static_cast<IUnknown*>(&outer));
    Late(&outer)->Let("Value", "x");
    EXPECT_EQ(ToText(Late(&outer)->Get("value")), "x");
    EXPECT_GT(outer.references, 0);
  }
  EXPECT_EQ(outer.references, 0);
  outer.inner = {};
}

class EveryPage : public ModuleTest, public testing::WithParamInterface<std::string> {};

TEST_P(EveryPage, ObeysTheRulesOfPages) {
  const auto page = Dll::Get().Make<IPropertyPage2>(GetParam());
  ASSERT_TRUE(page);
  EXPECT_TRUE(Pointer<IPropertyPage>::Query(page.get()));
  EXPECT_TRUE(Pointer<ISupportErrorInfo>::Query(page.get()));
  IUnknown* none = Poisoned<IUnknown>();
  EXPECT_EQ(page->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&none)), E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);

  PROPPAGEINFO info;
  std::memset(&info, 0xCC, sizeof info);
  EXPECT_EQ(page->GetPageInfo(nullptr), E_POINTER);
  EXPECT_EQ(page->GetPageInfo(&info), S_OK);
  EXPECT_EQ(FromWide(info.pszTitle), CreatePage(GetParam())->Caption());
  EXPECT_EQ(info.pszDocString, nullptr);
  EXPECT_EQ(info.pszHelpFile, nullptr);
  EXPECT_GT(info.size.cx, 0);
  EXPECT_GT(info.size.cy, 0);
  CoTaskMemFree(info.pszTitle);

  EXPECT_EQ(page->Activate(nullptr, nullptr, FALSE), E_POINTER);
  EXPECT_EQ(page->SetObjects(1, nullptr), E_POINTER);
  IUnknown* nobody = nullptr;
  EXPECT_EQ(page->SetObjects(1, &nobody), E_POINTER);
  TestErrorLog noDispatch;
  IUnknown* wrong = &noDispatch;
  EXPECT_EQ(page->SetObjects(1, &wrong), E_NOINTERFACE);
  EXPECT_EQ(page->SetObjects(0, nullptr), S_OK);
  EXPECT_EQ(page->IsPageDirty(), S_FALSE);
  EXPECT_EQ(page->Apply(), E_UNEXPECTED);
  EXPECT_EQ(page->Deactivate(), E_UNEXPECTED);
  EXPECT_EQ(page->Show(SW_SHOW), E_UNEXPECTED);
  EXPECT_EQ(page->Move(nullptr), E_POINTER);
  EXPECT_EQ(page->TranslateAccelerator(nullptr), E_POINTER);
  EXPECT_EQ(page->EditProperty(1), E_UNEXPECTED);
  EXPECT_EQ(page->SetPageSite(nullptr), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Contract, EveryPage, testing::ValuesIn(PageNames()), ParameterName);

}  // namespace
}  // namespace kvo::com
