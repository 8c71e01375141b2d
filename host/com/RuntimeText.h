// The contract with hosts, as the type library DTCFramework has it.
#pragma once

#include "host/com/Ole.h"

namespace kvo::com {

// Its id is in the list of classes; it is dual, so that scripts reach it as well.
struct IProvideRuntimeText : IDispatch {
  // The text that the host writes into the page in place of the control. The caller frees it.
  virtual HRESULT STDMETHODCALLTYPE GetRuntimeText(BSTR* text) noexcept = 0;
};

}  // namespace kvo::com
