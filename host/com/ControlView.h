#pragma once

#include "host/com/ControlState.h"
#include "host/com/Ole.h"

namespace kvo::com {

// The size of a box in hundredths of a millimetre.
SIZEL HimetricSize(const Box& box);

// IViewObject2: the box, drawn wherever the host wants it, metafiles included.
class ControlView final : public Part<IViewObject2> {
 public:
  explicit ControlView(ControlState& state);

  HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG index, void*, DVTARGETDEVICE*, HDC, HDC drawTo,
                                 LPCRECTL bounds, LPCRECTL, BOOL(STDMETHODCALLTYPE*)(ULONG_PTR),
                                 ULONG_PTR) noexcept override;
  HRESULT STDMETHODCALLTYPE GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC,
                                        LOGPALETTE** colors) noexcept override;
  // Nothing is kept back: the box is always drawn as it is.
  HRESULT STDMETHODCALLTYPE Freeze(DWORD, LONG, void*, DWORD* key) noexcept override;
  HRESULT STDMETHODCALLTYPE Unfreeze(DWORD) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetAdvise(DWORD aspects, DWORD flags,
                                      IAdviseSink* sink) noexcept override;
  HRESULT STDMETHODCALLTYPE GetAdvise(DWORD* aspects, DWORD* flags,
                                      IAdviseSink** sink) noexcept override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE*,
                                      SIZEL* size) noexcept override;

 private:
  void BoxChanged();

  ControlState& state_;
  Pointer<IAdviseSink> sink_;
  DWORD sinkAspects_ = 0;
  DWORD sinkFlags_ = 0;
};

}  // namespace kvo::com
