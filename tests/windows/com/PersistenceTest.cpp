#include "tests/windows/com/Host.h"

namespace kvo::com {
namespace {

class Persistence : public ModuleTest {};

using Entries = std::vector<TestBag::Entry>;

Entries Saved(IUnknown* control) {
  TestBag bag;
  EXPECT_EQ(Pointer<IPersistPropertyBag>::Query(control)->Save(&bag, FALSE, FALSE), S_OK);
  return bag.entries;
}

TEST_F(Persistence, ReadsDefaultsForMissingKeys) {
  const auto control = Dll::Get().Make<IUnknown>("DTCContact");
  EXPECT_EQ(ToText(Late(control.get())->Get("basename")), "");  // the initial value
  LoadDefaults(control.get());
  EXPECT_EQ(ToText(Late(control.get())->Get("basename")), "contact");
  EXPECT_EQ(Saved(control.get()), (Entries{{"format", ""}}));  // always stored
}

TEST_F(Persistence, StoresNoDefaultsEvenOnSavingEverything) {
  const auto control = Dll::Get().Make<IPersistPropertyBag>("DTCPrint");
  LoadDefaults(control.get());
  TestBag bag;
  EXPECT_EQ(control->Save(&bag, TRUE, TRUE), S_OK);
  EXPECT_EQ(bag.entries, (Entries{{"value", ""}, {"format", ""}}));
}

TEST_F(Persistence, AControlThatIsNeverLoadedKeepsItsEmptyNamespace) {
  const auto control = Dll::Get().Make<IPersistPropertyBag>("DTCPrint");
  EXPECT_EQ(control->InitNew(), S_OK);
  EXPECT_EQ(Saved(control.get()),
            (Entries{{"namespace", ""}, {"basename", ""}, {"value", ""}, {"format", ""}}));
}

TEST_F(Persistence, ConvertsValuesToTexts) {
  const auto control = Dll::Get().Make<IPersistPropertyBag>("DTCProductList");
  TestBag bag;
  bag.raw["display-columns"] = 3.0;
  bag.raw["value"] = Variant();
  EXPECT_EQ(control->Load(&bag, nullptr), S_OK);
  EXPECT_EQ(Late(control.get())->Get("DisplayColumns"), Variant(3));
}

TEST_F(Persistence, ReportsTheInvalidKey) {
  const auto control = Dll::Get().Make<IPersistPropertyBag>("DTCElement");
  TestBag bag(Entries{{"value", "td"}, {"opening-tag-only", "vielleicht"}});
  TestErrorLog log;
  EXPECT_EQ(control->Load(&bag, &log), static_cast<HRESULT>(0x800A000D));
  ASSERT_EQ(log.entries.size(), 1u);
  EXPECT_EQ(log.entries[0].key, "opening-tag-only");
  EXPECT_EQ(log.entries[0].code, static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(log.entries[0].source, "KVOPDesignObjects.DTCElement");
  EXPECT_EQ(log.entries[0].description, "Typen unverträglich: \"vielleicht\"");
  EXPECT_EQ(ToText(Late(control.get())->Get("Value")), "td");  // keys before it stay loaded
  // The caller receives the error as well.
  Pointer<IErrorInfo> info;
  Bstr description;
  EXPECT_EQ(control->Load(&bag, nullptr), static_cast<HRESULT>(0x800A000D));
  ASSERT_EQ(GetErrorInfo(0, info.Receive()), S_OK);
  info->GetDescription(description.Receive());
  EXPECT_EQ(description.Utf8(), "Typen unverträglich: \"vielleicht\"");
}

TEST_F(Persistence, PassesOnAFailureOfTheBag) {
  const auto control = Dll::Get().Make<IPersistPropertyBag>("DTCPrint");
  TestBag bag(Entries{{"value", "x"}});
  bag.failing["format"] = STG_E_READFAULT;
  TestErrorLog log;
  EXPECT_EQ(control->Load(&bag, &log), STG_E_READFAULT);
  ASSERT_EQ(log.entries.size(), 1u);
  EXPECT_EQ(log.entries[0].key, "format");
  EXPECT_EQ(control->Save(&bag, FALSE, FALSE), STG_E_READFAULT);
}

TEST_F(Persistence, OneClassSkipsInvalidKeysAndStillReportsThem) {
  const RegisteredControl* skipping = nullptr;
  for (const RegisteredControl& control : RegisteredControls())
    if (control.contract().readFailure == ReadFailure::skipsKey) skipping = &control;
  ASSERT_NE(skipping, nullptr);
  const ControlClass& contract = skipping->contract();
  const auto control = Dll::Get().Make<IPersistPropertyBag>(contract.name);
  TestBag bag;
  const std::string key(contract.bag[3].key);
  bag.failing[key] = STG_E_READFAULT;
  TestErrorLog log;
  EXPECT_EQ(control->Load(&bag, &log), S_OK);
  ASSERT_EQ(log.entries.size(), 1u);
  EXPECT_EQ(log.entries[0].key, key);
}

// --- the stream ---

Pointer<IStream> NewStream(std::string_view content = {}) {
  Pointer<IStream> stream;
  EXPECT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()), S_OK);
  if (!content.empty()) stream->Write(content.data(), static_cast<ULONG>(content.size()), nullptr);
  stream->Seek({}, STREAM_SEEK_SET, nullptr);
  return stream;
}

std::string Content(IStream* stream) {
  STATSTG about{};
  stream->Stat(&about, STATFLAG_NONAME);
  std::string content(static_cast<std::size_t>(about.cbSize.QuadPart), '\0');
  stream->Seek({}, STREAM_SEEK_SET, nullptr);
  stream->Read(content.data(), static_cast<ULONG>(content.size()), nullptr);
  stream->Seek({}, STREAM_SEEK_SET, nullptr);
  return content;
}

TEST_F(Persistence, StreamsContainTheSameAsBags) {
  const auto first = Dll::Get().Make<IPersistStreamInit>("DTCPrint");
  LoadDefaults(first.get());
  Late(first.get())->Let("Value", std::string("a\0ä\xED\xA0\x80", 7));
  const auto stream = NewStream();
  ULARGE_INTEGER size{};
  EXPECT_EQ(first->GetSizeMax(&size), S_OK);
  EXPECT_EQ(first->Save(stream.get(), TRUE), S_OK);
  EXPECT_EQ(Content(stream.get()).size(), size.QuadPart);
  EXPECT_EQ(Content(stream.get()).substr(0, 8), std::string("KVOB\1\0\0\0", 8));

  const auto second = Dll::Get().Make<IPersistStreamInit>("DTCPrint");
  EXPECT_EQ(second->Load(stream.get()), S_OK);
  EXPECT_EQ(Saved(second.get()), Saved(first.get()));
  EXPECT_EQ(Late(second.get())->Get("Value"), Late(first.get())->Get("Value"));
}

TEST_F(Persistence, EveryTruncatedStreamIsRefused) {
  const auto control = Dll::Get().Make<IPersistStreamInit>("DTCPrint");
  LoadDefaults(control.get());
  Late(control.get())->Let("Value", "unverändert");
  const auto stream = NewStream();
  control->Save(stream.get(), TRUE);
  const std::string whole = Content(stream.get());
  for (std::size_t length = 0; length < whole.size(); ++length)
    EXPECT_TRUE(FAILED(control->Load(NewStream(whole.substr(0, length)).get()))) << length;
  EXPECT_EQ(control->Load(NewStream(std::string("KVOB\2\0\0\0", 8)).get()), STG_E_INVALIDHEADER);
  EXPECT_EQ(control->Load(NewStream("nothing of ours").get()), STG_E_INVALIDHEADER);
  // Allocates nothing for a claimed length of four gigabytes.
  EXPECT_EQ(control->Load(NewStream(std::string("KVOB\1\0\0\0\1\0\0\0\xFF\xFF\xFF\xFF", 16)).get()),
            STG_E_READFAULT);
  EXPECT_EQ(ToText(Late(control.get())->Get("Value")), "unverändert");
}

TEST_F(Persistence, IsDirtyIfItWouldBeStoredDifferently) {
  const auto control = Dll::Get().Make<IPersistStreamInit>("DTCPrint");
  EXPECT_EQ(control->IsDirty(), S_FALSE);
  LoadDefaults(control.get());
  EXPECT_EQ(control->IsDirty(), S_FALSE);
  Late(control.get())->Let("Value", "x");
  EXPECT_EQ(control->IsDirty(), S_OK);
  EXPECT_EQ(control->Save(NewStream().get(), FALSE), S_OK);
  EXPECT_EQ(control->IsDirty(), S_OK);
  EXPECT_EQ(control->Save(NewStream().get(), TRUE), S_OK);
  EXPECT_EQ(control->IsDirty(), S_FALSE);
}

}  // namespace
}  // namespace kvo::com
