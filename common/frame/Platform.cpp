#include "common/frame/Platform.h"

#include <new>
#include <stdexcept>

#include "common/values/Object.h"
#include "common/values/RuntimeError.h"

namespace kvo {
namespace {

Platform* g_platform = nullptr;

// The object that a host's extender wraps; nullptr when it cannot be reached for any reason.
ObjectRef WrappedObject(Object& extender) {
  try {
    return ToObject(extender.Get("Object"));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace

Platform& ThePlatform() {
  if (g_platform == nullptr) throw std::logic_error("no platform installed");
  return *g_platform;
}

PlatformScope::PlatformScope(Platform& platform) : former_(g_platform) { g_platform = &platform; }
PlatformScope::~PlatformScope() { g_platform = former_; }

GuidText CreateGUID() { return ThePlatform().NewGuid(); }

void ShowPropertyPages(ObjectRef object, std::string_view caption, WindowHandle owner) {
  std::optional<std::vector<std::string>> pages;
  if (object != nullptr) pages = object->PropertyPages();
  if (object != nullptr && !pages)
    if (const ObjectRef wrapped = WrappedObject(*object)) pages = wrapped->PropertyPages();
  if (!pages) throw RuntimeError(ErrorNumber::typeMismatch);
  ThePlatform().ShowPropertyFrame(owner, caption, std::move(object), *pages);
}

}  // namespace kvo
