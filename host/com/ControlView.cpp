#include "host/com/ControlView.h"

#include "host/com/Edge.h"
#include "host/win32/BoxPainter.h"

namespace kvo::com {
namespace {

constexpr int kHimetricPerInch = 2540;

}  // namespace

SIZEL HimetricSize(const Box& box) {
  return {MulDiv(box.width, kHimetricPerInch, kTwipsPerInch),
          MulDiv(box.height, kHimetricPerInch, kTwipsPerInch)};
}

ControlView::ControlView(ControlState& state) : Part(state.identity), state_(state) {
  state.boxWatchers.emplace_back([this] { BoxChanged(); });
}

HRESULT ControlView::Draw(DWORD aspect, LONG index, void*, DVTARGETDEVICE*, HDC, HDC drawTo,
                          LPCRECTL bounds, LPCRECTL, BOOL(STDMETHODCALLTYPE*)(ULONG_PTR),
                          ULONG_PTR) noexcept {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (index != -1) return DV_E_LINDEX;
  if (drawTo == nullptr || bounds == nullptr) return E_INVALIDARG;
  return Boundary(state_.source, [&] {
    DrawBox(drawTo, state_.control->DesignTimeBox(),
            {bounds->left, bounds->top, bounds->right, bounds->bottom});
  });
}

HRESULT ControlView::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC,
                                 LOGPALETTE** colors) noexcept {
  return Clear(colors) ? S_FALSE : E_POINTER;
}

HRESULT ControlView::Freeze(DWORD, LONG, void*, DWORD* key) noexcept {
  return Clear(key) ? E_NOTIMPL : E_POINTER;
}

HRESULT ControlView::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) noexcept {
  return Boundary(state_.source, [&] {
    sinkAspects_ = sink == nullptr ? 0 : aspects;
    sinkFlags_ = sink == nullptr ? 0 : flags;
    sink_ = Pointer<IAdviseSink>(sink);
    if ((flags & ADVF_PRIMEFIRST) != 0) BoxChanged();
  });
}

HRESULT ControlView::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) noexcept {
  // Each of them may be left out.
  if (aspects != nullptr) *aspects = sinkAspects_;
  if (flags != nullptr) *flags = sinkFlags_;
  if (sink != nullptr) *sink = Pointer<IAdviseSink>(sink_).Detach();
  return S_OK;
}

HRESULT ControlView::GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE*, SIZEL* size) noexcept {
  if (!Clear(size)) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (index != -1) return DV_E_LINDEX;
  return Boundary(state_.source, [&] { *size = HimetricSize(state_.control->DesignTimeBox()); });
}

void ControlView::BoxChanged() {
  if (!sink_ || (sinkAspects_ & DVASPECT_CONTENT) == 0) return;
  const Pointer<IAdviseSink> sink = sink_;
  if ((sinkFlags_ & ADVF_ONLYONCE) != 0) sink_ = {};
  sink->OnViewChange(DVASPECT_CONTENT, -1);
}

}  // namespace kvo::com
