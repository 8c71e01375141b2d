#include "host/com/Edge.h"

#include <new>

#include "common/values/Localized.h"
#include "common/values/RuntimeError.h"
#include "host/com/Pointer.h"
#include "host/com/Text.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

// The base of the result codes for runtime errors.
constexpr HRESULT kRuntimeErrors = static_cast<HRESULT>(0x800A0000);

// Returns the system's message for a result code.
std::string SystemText(HRESULT code) {
  wchar_t* buffer = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, static_cast<DWORD>(code), 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
  std::wstring text(buffer == nullptr ? L"" : buffer, length);
  LocalFree(buffer);
  while (!text.empty() && text.back() <= L' ') text.pop_back();
  if (!text.empty()) return FromWide(text);
  constexpr Localized kUnknown = {"Fehler {}", "Error {}"};
  wchar_t digits[16];
  wsprintfW(digits, L"0x%08X", static_cast<unsigned>(code));
  return Say(kUnknown, {FromWide(digits)});
}

}  // namespace

HostFailure::HostFailure(HRESULT code, std::string description, std::string source)
    : code_(code), description_(std::move(description)), source_(std::move(source)) {
  if (description_.empty()) description_ = SystemText(code);
}

void Check(HRESULT code) {
  if (SUCCEEDED(code)) return;
  Pointer<IErrorInfo> info;
  std::string description;
  std::string source;
  if (GetErrorInfo(0, info.Receive()) == S_OK) {
    Bstr text;
    if (SUCCEEDED(info->GetDescription(text.Receive()))) description = text.Utf8();
    if (SUCCEEDED(info->GetSource(text.Receive()))) source = text.Utf8();
  }
  throw HostFailure(code, std::move(description), std::move(source));
}

Failure CaughtFailure(std::wstring_view source) noexcept {
  Failure failure;
  try {
    try {
      throw;
    } catch (const RuntimeError& error) {
      failure.code = kRuntimeErrors + error.Number();
      failure.description = ToWide(FailureText(error));
      failure.source = source;
    } catch (const HostFailure& host) {
      failure.code = host.Code();
      failure.description = ToWide(FailureText(host));
      failure.source = host.Source().empty() ? std::wstring(source) : ToWide(host.Source());
    } catch (const std::bad_alloc&) {
      failure.code = E_OUTOFMEMORY;
    } catch (const std::exception& other) {
      failure.description = ToWide(FailureText(other));
      failure.source = source;
    }
  } catch (...) {
    // Returns the code without the texts.
  }
  return failure;
}

HRESULT Report(const Failure& failure) noexcept {
  SetErrorInfo(0, nullptr);
  Pointer<ICreateErrorInfo> info;
  if (FAILED(CreateErrorInfo(info.Receive()))) return failure.code;
  info->SetDescription(const_cast<wchar_t*>(failure.description.c_str()));
  info->SetSource(const_cast<wchar_t*>(failure.source.c_str()));
  const auto filled = Pointer<IErrorInfo>::Query(info.get());
  if (filled) SetErrorInfo(0, filled.get());
  return failure.code;
}

}  // namespace kvo::com
