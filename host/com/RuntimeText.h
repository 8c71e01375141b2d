// The interface to hosts, as in the type library DTCFramework.
#pragma once

#include "host/com/Ole.h"

namespace kvo::com {

// Its id is in the list of classes. A dual interface, so that scripts can call it as well.
struct IProvideRuntimeText : IDispatch {
  // Returns the text that the host writes into the page in place of the control. The caller frees
  // it.
  virtual HRESULT STDMETHODCALLTYPE GetRuntimeText(BSTR* text) noexcept = 0;
};

}  // namespace kvo::com
