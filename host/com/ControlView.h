#pragma once

#include "host/com/ControlState.h"
#include "host/com/Edge.h"
#include "host/com/Ole.h"
#include "host/win32/BoxPainter.h"

namespace kvo::com {

// The size of a box in hundredths of a millimetre.
inline SIZEL HimetricSize(const Box& box) {
  constexpr int kHimetricPerInch = 2540;
  return {MulDiv(box.width, kHimetricPerInch, kTwipsPerInch),
          MulDiv(box.height, kHimetricPerInch, kTwipsPerInch)};
}

// IViewObject2: draws the box on any device, including metafiles.
class ControlView final : public ControlPart<IViewObject2> {
 public:
  explicit ControlView(ControlState& state) : ControlPart(state) {
    state.boxWatchers.emplace_back([this] { BoxChanged(); });
  }

  HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG index, void*, DVTARGETDEVICE*, HDC, HDC drawTo,
                                 LPCRECTL bounds, LPCRECTL, BOOL(STDMETHODCALLTYPE*)(ULONG_PTR),
                                 ULONG_PTR) noexcept override {
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (index != -1) return DV_E_LINDEX;
    if (drawTo == nullptr || bounds == nullptr) return E_INVALIDARG;
    return Boundary(state_.source, [&] {
      DrawBox(drawTo, state_.control->DesignTimeBox(),
              {bounds->left, bounds->top, bounds->right, bounds->bottom});
    });
  }
  HRESULT STDMETHODCALLTYPE GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC,
                                        LOGPALETTE** colors) noexcept override {
    return Clear(colors) ? S_FALSE : E_POINTER;
  }
  // Not supported: always draws the current box.
  HRESULT STDMETHODCALLTYPE Freeze(DWORD, LONG, void*, DWORD* key) noexcept override {
    return Clear(key) ? E_NOTIMPL : E_POINTER;
  }
  HRESULT STDMETHODCALLTYPE Unfreeze(DWORD) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetAdvise(DWORD aspects, DWORD flags,
                                      IAdviseSink* sink) noexcept override {
    return Boundary(state_.source, [&] {
      sinkAspects_ = sink == nullptr ? 0 : aspects;
      sinkFlags_ = sink == nullptr ? 0 : flags;
      sink_ = Pointer<IAdviseSink>(sink);
      if ((flags & ADVF_PRIMEFIRST) != 0) BoxChanged();
    });
  }
  // Each argument may be null.
  HRESULT STDMETHODCALLTYPE GetAdvise(DWORD* aspects, DWORD* flags,
                                      IAdviseSink** sink) noexcept override {
    if (aspects != nullptr) *aspects = sinkAspects_;
    if (flags != nullptr) *flags = sinkFlags_;
    if (sink != nullptr) *sink = Pointer<IAdviseSink>(sink_).Detach();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE*,
                                      SIZEL* size) noexcept override {
    if (!Clear(size)) return E_POINTER;
    if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
    if (index != -1) return DV_E_LINDEX;
    return Boundary(state_.source, [&] { *size = HimetricSize(state_.control->DesignTimeBox()); });
  }

 private:
  void BoxChanged() {
    if (!sink_ || (sinkAspects_ & DVASPECT_CONTENT) == 0) return;
    const Pointer<IAdviseSink> sink = sink_;
    if ((sinkFlags_ & ADVF_ONLYONCE) != 0) sink_ = {};
    sink->OnViewChange(DVASPECT_CONTENT, -1);
  }

  Pointer<IAdviseSink> sink_;
  DWORD sinkAspects_ = 0;
  DWORD sinkFlags_ = 0;
};

}  // namespace kvo::com
