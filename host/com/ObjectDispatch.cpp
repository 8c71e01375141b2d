#include "host/com/ObjectDispatch.h"

#include <algorithm>
#include <vector>

#include "common/values/Ascii.h"
#include "common/values/RuntimeError.h"
#include "host/com/Classes.h"
#include "host/com/Counted.h"
#include "host/com/Dispatch.h"
#include "host/com/Edge.h"
#include "host/com/Values.h"
#include "host/win32/WideText.h"

namespace kvo::com {
namespace {

// A private interface id by which BridgedObject recognises ObjectDispatch.
constexpr GUID kBridged = {
    0x5C0E4A57, 0x9B1F, 0x4E0D, {0x8F, 0x36, 0x4B, 0x0B, 0x7B, 0x3B, 0x1C, 0x52}};

class Walk final : public Counted<IEnumVARIANT> {
 public:
  explicit Walk(ObjectRef collection)
      : collection_(std::move(collection)), elements_(collection_->Enumerate()) {}

  HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept override {
    if (fetched != nullptr) *fetched = 0;
    if (values == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    for (ULONG i = 0; i < count; ++i) VariantInit(&values[i]);
    return Boundary(kLibrarySource, [&] {
      ULONG done = 0;
      for (; done < count; ++done) {
        const auto element = elements_->Next();
        if (!element) break;
        values[done] = ToVariant(*element);
        if (fetched != nullptr) *fetched = done + 1;
      }
      return done == count ? S_OK : S_FALSE;
    });
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) noexcept override {
    return Boundary(kLibrarySource, [&] {
      for (; count > 0; --count)
        if (!elements_->Next()) return S_FALSE;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE Reset() noexcept override {
    return Boundary(kLibrarySource, [&] { elements_ = collection_->Enumerate(); });
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) noexcept override {
    return Clear(copy) ? E_NOTIMPL : E_POINTER;
  }

 private:
  ObjectRef collection_;
  std::unique_ptr<Enumerator> elements_;
};

class ObjectDispatch final : public Counted<IDispatch> {
 public:
  explicit ObjectDispatch(ObjectRef object) : object_(std::move(object)) {
    SetIdentity(*object_, this);
  }
  const ObjectRef& Held() const { return object_; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    return Clear(count) ? S_OK : E_POINTER;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
    return Clear(info) ? DISP_E_BADINDEX : E_POINTER;
  }

  // Assigns ids to new names in sequence, because an Object cannot list its members. Whether a
  // member exists is known only when it is used.
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID,
                                          DISPID* members) noexcept override {
    return FindMembers(iid, names, count, members, [this](std::string_view name) {
      const auto same = [&](const std::string& known) { return EqualIgnoringCase(known, name); };
      const auto found = std::ranges::find_if(names_, same);
      const auto at = found - names_.begin();
      if (found == names_.end()) names_.emplace_back(name);
      return static_cast<DISPID>(at + 1);
    });
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID iid, LCID, WORD kind,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT*) noexcept override {
    return InvokeMember(kLibrarySource, iid, kind, parameters, result, exception,
                        [&](const Invocation& call) { return Perform(member, call); });
  }

 private:
  ~ObjectDispatch() override { ForgetIdentity(*object_); }

  bool Supports(REFIID iid) override { return iid == kBridged; }

  HRESULT Perform(DISPID member, const Invocation& call) {
    if (member == DISPID_NEWENUM) {
      call.Return([&](VARIANT& result) {
        result.punkVal = new Walk(object_);
        result.vt = VT_UNKNOWN;
      });
      return S_OK;
    }
    if (member == DISPID_VALUE && call.arguments.size() == 1 && !call.IsPut()) {
      call.Return(object_->Item(call.arguments[0]));
      return S_OK;
    }
    if (member < 1 || static_cast<std::size_t>(member) > names_.size())
      return DISP_E_MEMBERNOTFOUND;
    const std::string name = names_[static_cast<std::size_t>(member) - 1];
    if (call.IsPut()) {
      object_->Let(name, call.arguments[0]);
    } else {
      call.Return(call.arguments.empty() ? Read(name) : object_->Call(name, call.arguments));
    }
    return S_OK;
  }

  // Without arguments, a property and a method call look the same.
  Variant Read(const std::string& name) {
    try {
      return object_->Get(name);
    } catch (const RuntimeError& error) {
      if (error.Number() != static_cast<int>(ErrorNumber::unknownMember)) throw;
    }
    return object_->Call(name, {});
  }

  ObjectRef object_;
  std::vector<std::string> names_;
};

}  // namespace

Pointer<IDispatch> NewObjectDispatch(const ObjectRef& object) {
  return Pointer<IDispatch>::Attach(new ObjectDispatch(object));
}

ObjectRef BridgedObject(IDispatch* object) {
  IDispatch* found = nullptr;
  if (FAILED(object->QueryInterface(kBridged, reinterpret_cast<void**>(&found)))) return nullptr;
  const auto held = Pointer<IDispatch>::Attach(found);
  return static_cast<ObjectDispatch*>(found)->Held();
}

}  // namespace kvo::com
