// The bridge between our late binding and Windows automation, and the conversions of both.
#include <gmock/gmock.h>

#include "common/values/RuntimeError.h"
#include "host/com/ComPlatform.h"
#include "host/com/DispatchObject.h"
#include "tests/core/Conversions.h"
#include "tests/core/ErrorOf.h"
#include "tests/windows/com/Host.h"

namespace kvo::com {
namespace {

// --- the conversions that must match those of Windows ---

TEST(Conversions, OfWholeNumbersMatchWindows) {
  for (const auto& expected : kWholeNumbers) {
    std::wstring text = ToWide(expected.text);
    LONG value = 0;
    const HRESULT code = VarI4FromStr(
        text.data(), MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT), 0, &value);
    const int error = code == DISP_E_TYPEMISMATCH ? kMismatch
                      : code == DISP_E_OVERFLOW   ? kOverflow
                      : SUCCEEDED(code)           ? 0
                                                  : -1;
    EXPECT_EQ(error, expected.error) << '"' << expected.text << '"';
    if (error == 0 && expected.error == 0) {
      EXPECT_EQ(value, expected.value) << '"' << expected.text << '"';
    }
  }
}

TEST(Conversions, OfFlagsMatchWindows) {
  for (const auto& expected : kFlags) {
    std::wstring text = ToWide(expected.text);
    VARIANT_BOOL value = VARIANT_FALSE;
    const HRESULT code = VarBoolFromStr(
        text.data(), MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT), 0, &value);
    const int error = code == DISP_E_TYPEMISMATCH ? kMismatch : SUCCEEDED(code) ? 0 : -1;
    EXPECT_EQ(error, expected.error) << '"' << expected.text << '"';
    if (error == 0 && expected.error == 0) {
      EXPECT_EQ(value != VARIANT_FALSE, expected.value) << '"' << expected.text << '"';
    }
  }
}

TEST(Format, FollowsTheUsersLocale) {
  ComPlatform platform;
  EXPECT_EQ(platform.Format(1134.23, "#,##0.00"), "1.134,23");
  EXPECT_EQ(platform.Format("23.04.2004 16:09:53", "dd. mmmm yyyy"), "23. April 2004");
}

TEST(Guids, AreInRegistryForm) {
  ComPlatform platform;
  const std::string first(std::string_view(platform.NewGuid()));
  EXPECT_EQ(first.size(), 38u);
  EXPECT_EQ(first.find_first_not_of("{}-0123456789ABCDEF"), std::string::npos);
  EXPECT_EQ(first.find('{') + first.rfind('}'), 37u);
  EXPECT_NE(first, std::string_view(platform.NewGuid()));
}

// --- values ---

Variant RoundTrip(const Variant& value) {
  AutoVariant automation(value);
  return FromVariant(*automation);
}

TEST(Values, SurviveARoundTrip) {
  for (const Variant& value :
       {Variant(), Variant(true), Variant(false), Variant(-7), Variant(1.5), Variant(""),
        Variant("ä€𝄞"), Variant(std::string("a\0b", 3)), Variant("\xED\xA0\x80 unpaired")})
    EXPECT_EQ(RoundTrip(value), value);
}

TEST(Values, OfEveryNumberTypeAreRead) {
  const auto read = [](VARTYPE type, auto set) {
    VARIANT value{};
    value.vt = type;
    set(value);
    return FromVariant(value);
  };
  EXPECT_EQ(read(VT_I1, [](VARIANT& v) { v.cVal = -5; }), Variant(-5));
  EXPECT_EQ(read(VT_UI1, [](VARIANT& v) { v.bVal = 200; }), Variant(200));
  EXPECT_EQ(read(VT_I2, [](VARIANT& v) { v.iVal = -300; }), Variant(-300));
  EXPECT_EQ(read(VT_UI2, [](VARIANT& v) { v.uiVal = 60000; }), Variant(60000));
  EXPECT_EQ(read(VT_UI4, [](VARIANT& v) { v.ulVal = 4000000000u; }), Variant(4000000000.0));
  EXPECT_EQ(read(VT_I8, [](VARIANT& v) { v.llVal = -8; }), Variant(-8));
  EXPECT_EQ(read(VT_I8, [](VARIANT& v) { v.llVal = 1ll << 40; }), Variant(1099511627776.0));
  EXPECT_EQ(read(VT_UI8, [](VARIANT& v) { v.ullVal = 9; }), Variant(9));
  EXPECT_EQ(read(VT_R4, [](VARIANT& v) { v.fltVal = 0.5f; }), Variant(0.5));
  EXPECT_EQ(read(VT_CY, [](VARIANT& v) { v.cyVal.int64 = 12500; }), Variant(1.25));
  EXPECT_THAT(ToText(read(VT_DATE, [](VARIANT& v) { v.date = 38100; })),
              testing::AnyOf("23.04.2004", "23.4.2004"));
  EXPECT_EQ(read(VT_NULL, [](VARIANT&) {}), Variant());
  EXPECT_EQ(read(VT_ERROR, [](VARIANT& v) { v.scode = DISP_E_PARAMNOTFOUND; }), Variant());
  LONG there = 42;
  EXPECT_EQ(read(VT_I4 | VT_BYREF, [&](VARIANT& v) { v.plVal = &there; }), Variant(42));
  EXPECT_THROW(read(VT_ARRAY | VT_I4, [](VARIANT&) {}), RuntimeError);
}

// --- objects ---

class Greeter final : public Object {
 public:
  Variant Get(std::string_view name) override {
    if (name == "Greeting") return greeting;
    if (name == "Broken") throw RuntimeError(ErrorNumber::keyInUse, "x");
    return Object::Get(name);
  }
  void Let(std::string_view name, Variant value) override {
    if (name != "Greeting") return Object::Let(name, std::move(value));
    greeting = ToText(value);
  }
  Variant Call(std::string_view name, std::span<const Variant> arguments) override {
    if (name != "Join" || arguments.size() != 2) return Object::Call(name, arguments);
    return ToText(arguments[0]) + ToText(arguments[1]);
  }
  std::string greeting = "hallo";
};

// Wraps one of our objects for Windows, and that wrapper for us again.
std::shared_ptr<Object> ThereAndBack(const ObjectRef& object, Pointer<IDispatch>& held) {
  held = ToDispatch(object);
  return std::make_shared<DispatchObject>(held.get());
}

TEST(Objects, KeepTheirIdentity) {
  const auto greeter = std::make_shared<Greeter>();
  const auto outside = ToDispatch(greeter);
  EXPECT_EQ(ToDispatch(greeter).get(), outside.get());
  EXPECT_EQ(FromDispatch(outside.get()), greeter);
  const auto control = Dll::Get().Make<IDispatch>("DTCPrint");
  EXPECT_EQ(ToDispatch(FromDispatch(control.get())).get(), control.get());
  EXPECT_EQ(FromDispatch(nullptr), nullptr);
  EXPECT_FALSE(ToDispatch(nullptr));
}

TEST(Objects, WorkThroughBothWrappers) {
  Pointer<IDispatch> held;
  const auto greeter = std::make_shared<Greeter>();
  const auto seen = ThereAndBack(greeter, held);
  EXPECT_EQ(ToText(seen->Get("Greeting")), "hallo");
  seen->Let("Greeting", "servus");
  EXPECT_EQ(greeter->greeting, "servus");
  const Variant arguments[] = {"a", 5};
  EXPECT_EQ(ToText(seen->Call("Join", arguments)), "a5");
}

TEST(Objects, FailWithTheSameNumbers) {
  Pointer<IDispatch> held;
  const auto seen = ThereAndBack(std::make_shared<Greeter>(), held);
  try {
    seen->Get("Broken");
    FAIL();
  } catch (const HostFailure& failure) {
    EXPECT_EQ(failure.Code(), static_cast<HRESULT>(0x800A0000 + 457));
    EXPECT_NE(failure.Description().find("Auflistung"), std::string::npos);
  }
  EXPECT_EQ(ErrorOf([] { Late(Dll::Get().Make<IUnknown>("DTCPrint").get())->Get("Nowhere"); }),
            438);
}

TEST(Objects, AreCollections) {
  auto collection = std::make_shared<Collection>();
  collection->Add("eins");
  collection->Add(2);
  Pointer<IDispatch> held;
  const auto seen = ThereAndBack(collection, held);
  std::vector<std::string> walked;
  ForEach(*seen, [&](const Variant& element) { walked.push_back(ToText(element)); });
  EXPECT_EQ(walked, (std::vector<std::string>{"eins", "2"}));
  EXPECT_EQ(seen->Item(2), Variant(2));
  EXPECT_EQ(seen->Get("Count"), Variant(2));
  EXPECT_THROW(seen->Item(3), HostFailure);
  EXPECT_FALSE(seen->PropertyPages());
}

TEST(Objects, OfTheModuleReturnTheirPages) {
  const auto print = Late(Dll::Get().Make<IUnknown>("DTCPrint").get());
  EXPECT_EQ(print->PropertyPages(),
            (std::vector<std::string>{"propPrintGeneral", "propGeneralFormat"}));
}

}  // namespace
}  // namespace kvo::com
