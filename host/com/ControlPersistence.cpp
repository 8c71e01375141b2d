#include "host/com/ControlPersistence.h"

#include <limits>

#include "common/values/RuntimeError.h"
#include "host/com/Dispatch.h"
#include "host/com/Edge.h"
#include "host/com/Text.h"
#include "host/com/Values.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

// The host's property bag, for one load or save.
class HostBag final : public PropertyBag {
 public:
  HostBag(const ControlClass& contract, IPropertyBag* bag, IErrorLog* log, std::wstring_view source)
      : contract_(contract), bag_(bag), log_(log), source_(source) {}

 private:
  std::optional<std::string_view> Find(std::string_view key) override {
    AutoVariant found;
    const HRESULT code = bag_->Read(ToWide(key).c_str(), found.get(), log_);
    if (code == E_INVALIDARG) return std::nullopt;  // the key is not in the bag
    Check(code);
    return found_ = StoredText(*contract_.FindKey(key), FromVariant(*found));
  }

  void Store(std::string_view key, std::string_view value) override {
    AutoVariant text{Variant(value)};
    Check(bag_->Write(ToWide(key).c_str(), text.get()));
  }

  // Must be called inside the catch block.
  void KeyFailed(std::string_view key, const std::exception&) override {
    if (log_ == nullptr) return;
    EXCEPINFO exception;
    Fill(exception, CaughtFailure(source_));
    log_->AddError(ToWide(key).c_str(), &exception);  // the log keeps copies
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
  }

  const ControlClass& contract_;
  IPropertyBag* bag_;
  IErrorLog* log_;
  std::wstring_view source_;
  std::string found_;
};

// --- the stream ---

constexpr std::string_view kMark = "KVOB";
constexpr std::uint32_t kVersion = 1;

void AppendNumber(std::string& out, std::size_t number) {
  if (number > std::numeric_limits<std::uint32_t>::max()) throw HostFailure(STG_E_MEDIUMFULL);
  for (int shift = 0; shift < 32; shift += 8) out += static_cast<char>((number >> shift) & 0xFF);
}

std::string ToStream(const std::vector<MemoryBag::Entry>& entries) {
  std::string out(kMark);
  AppendNumber(out, kVersion);
  AppendNumber(out, entries.size());
  for (const auto& [key, value] : entries)
    for (const std::string* text : {&key, &value}) {
      AppendNumber(out, text->size());
      out += *text;
    }
  return out;
}

class StreamReader {
 public:
  explicit StreamReader(IStream* stream) : stream_(stream) {}

  // Reads in pieces, so that a wrong length allocates no more than the stream holds.
  std::string Text(std::size_t length) {
    constexpr std::size_t kPiece = 1 << 16;
    std::string text;
    while (text.size() < length) {
      const std::size_t had = text.size();
      const std::size_t piece = std::min(kPiece, length - had);
      text.resize(had + piece);
      ULONG read = 0;
      Check(stream_->Read(text.data() + had, static_cast<ULONG>(piece), &read));
      if (read != piece) throw HostFailure(STG_E_READFAULT);
    }
    return text;
  }

  std::uint32_t Number() {
    const std::string bytes = Text(sizeof(std::uint32_t));
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
      number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    return number;
  }

 private:
  IStream* stream_;
};

std::vector<MemoryBag::Entry> FromStream(IStream* stream) {
  StreamReader reader(stream);
  if (reader.Text(kMark.size()) != kMark || reader.Number() != kVersion)
    throw HostFailure(STG_E_INVALIDHEADER);
  std::vector<MemoryBag::Entry> entries;
  for (std::uint32_t left = reader.Number(); left > 0; --left) {
    std::string key = reader.Text(reader.Number());
    std::string value = reader.Text(reader.Number());
    entries.emplace_back(std::move(key), std::move(value));
  }
  return entries;
}

}  // namespace

ControlPersistence::ControlPersistence(ControlState& state)
    : ControlPart(state), clean_(Stored()) {}

ControlPersistence::Entries ControlPersistence::Stored() const {
  MemoryBag bag;
  state_.control->WriteProperties(bag);
  return bag.Entries();
}

void ControlPersistence::Load(PropertyBag& bag) {
  const auto hold = state_.Hold();
  state_.control->ReadProperties(bag);
  clean_ = Stored();
  state_.BoxChanged();
}

HRESULT ControlPersistence::GetClassID(CLSID* classId) noexcept {
  if (!Clear(classId)) return E_POINTER;
  return Boundary(state_.source, [&] { *classId = ToGuid(state_.registered.classId); });
}

HRESULT ControlPersistence::InitNew() noexcept { return S_OK; }

HRESULT ControlPersistence::Load(IPropertyBag* bag, IErrorLog* log) noexcept {
  if (bag == nullptr) return E_POINTER;
  return Boundary(state_.source, [&] {
    HostBag hostBag(state_.Contract(), bag, log, state_.source);
    Load(hostBag);
  });
}

HRESULT ControlPersistence::Save(IPropertyBag* bag, BOOL clearDirty, BOOL) noexcept {
  if (bag == nullptr) return E_POINTER;
  return Boundary(state_.source, [&] {
    HostBag hostBag(state_.Contract(), bag, nullptr, state_.source);
    state_.control->WriteProperties(hostBag);
    if (clearDirty) clean_ = Stored();
  });
}

HRESULT ControlPersistence::IsDirty() noexcept {
  return Boundary(state_.source, [&] { return Stored() == clean_ ? S_FALSE : S_OK; });
}

HRESULT ControlPersistence::Load(IStream* stream) noexcept {
  if (stream == nullptr) return E_POINTER;
  return Boundary(state_.source, [&] {
    MemoryBag bag(FromStream(stream));
    Load(bag);
  });
}

HRESULT ControlPersistence::Save(IStream* stream, BOOL clearDirty) noexcept {
  if (stream == nullptr) return E_POINTER;
  return Boundary(state_.source, [&] {
    const std::string bytes = ToStream(Stored());
    ULONG written = 0;
    Check(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written));
    if (written != bytes.size()) throw HostFailure(STG_E_MEDIUMFULL);
    if (clearDirty) clean_ = Stored();
  });
}

HRESULT ControlPersistence::GetSizeMax(ULARGE_INTEGER* size) noexcept {
  if (!Clear(size)) return E_POINTER;
  return Boundary(state_.source, [&] { size->QuadPart = ToStream(Stored()).size(); });
}

}  // namespace kvo::com
