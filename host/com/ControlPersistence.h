#pragma once

#include "host/com/ControlState.h"
#include "host/com/Ole.h"

namespace kvo::com {

// IPersistPropertyBag and IPersistStreamInit: the control's keys, each a text, in their persisted
// order. A value equal to its write default is not stored, whatever the host asks for: pages depend
// on it.
//
// The stream, all numbers 32 bits, little end first: "KVOB", the version 1, the number of entries,
// then for each its key and its value, each as a number of bytes and that many bytes of UTF-8.
class ControlPersistence final : public ControlPart<IPersistPropertyBag, IPersistStreamInit> {
 public:
  explicit ControlPersistence(ControlState& state);

  // IPersist, of both
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) noexcept override;

  // Does nothing: a control that is never loaded stays as it was born.
  HRESULT STDMETHODCALLTYPE InitNew() noexcept override;

  // IPersistPropertyBag. What a key's value cannot be, and what the bag fails at, goes to the log
  // under the key's name.
  HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) noexcept override;
  HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clearDirty,
                                 BOOL saveAll) noexcept override;

  // IPersistStreamInit. Setters tell nobody that something changed; dirty is what would be stored
  // differently than it was last loaded or saved.
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
