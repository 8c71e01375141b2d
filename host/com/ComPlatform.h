#pragma once

#include "host/win32/Win32Platform.h"

namespace kvo::com {

// The platform of the component: Windows' dialogs, and what COM does besides.
class ComPlatform final : public Win32Platform {
 public:
  kvo::GuidText NewGuid() override;
  // In the user's locale.
  std::string Format(const Variant& value, std::string_view pattern) override;
  // In the system's own frame. HostFailure when it cannot be shown.
  void ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                         const std::vector<std::string>& pages) override;
  // ADO's. RuntimeError 429 when it is not installed.
  ObjectRef NewRecordset() override;
};

}  // namespace kvo::com
