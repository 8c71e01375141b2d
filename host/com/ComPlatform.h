#pragma once

#include "host/win32/Win32Platform.h"

namespace kvo::com {

// The component's platform: Windows' dialogs and the services of COM.
class ComPlatform final : public Win32Platform {
 public:
  kvo::GuidText NewGuid() override;
  // Formats in the user's locale.
  std::string Format(const Variant& value, std::string_view pattern) override;
  // Shows the system's property frame. Throws HostFailure when that fails.
  void ShowPropertyFrame(WindowHandle owner, std::string_view caption, ObjectRef object,
                         const std::vector<std::string>& pages) override;
  // Creates an ADO recordset. Throws RuntimeError 429 when ADO is not installed.
  ObjectRef NewRecordset() override;
};

}  // namespace kvo::com
