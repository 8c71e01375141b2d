#pragma once

#include "host/com/ControlState.h"
#include "host/com/Ole.h"

namespace kvo::com {

// IPersistPropertyBag and IPersistStreamInit: the control's keys, each a text, in their persisted
// order. Never stores a value that equals its write default, even if the host asks for all: pages
// depend on that.
//
// The stream, with 32-bit little-endian numbers: "KVOB", the version 1, the number of entries, then
// for each its key and value, each as a byte count followed by that many bytes of UTF-8.
class ControlPersistence final : public ControlPart<IPersistPropertyBag, IPersistStreamInit> {
 public:
  explicit ControlPersistence(ControlState& state);

  // IPersist, the base of both
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) noexcept override;

  // Does nothing: a control that is never loaded keeps its initial state.
  HRESULT STDMETHODCALLTYPE InitNew() noexcept override;

  // IPersistPropertyBag. Logs invalid values and failures of the bag under the key's name.
  HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) noexcept override;
  HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clearDirty,
                                 BOOL saveAll) noexcept override;

  // IPersistStreamInit. Setters do not report changes, so a control is dirty if it would be stored
  // differently than when it was last loaded or saved.
  HRESULT STDMETHODCALLTYPE IsDirty() noexcept override;
  HRESULT STDMETHODCALLTYPE Load(IStream* stream) noexcept override;
  HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) noexcept override;
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) noexcept override;

 private:
  using Entries = std::vector<MemoryBag::Entry>;
  Entries Stored() const;
  void Load(PropertyBag& bag);

  Entries clean_;
};

}  // namespace kvo::com
