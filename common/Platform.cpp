#include "common/Platform.h"

#include <stdexcept>

namespace kvo {
namespace {

Platform* g_platform = nullptr;

}  // namespace

Platform& ThePlatform() {
  if (g_platform == nullptr) throw std::logic_error("no platform installed");
  return *g_platform;
}

PlatformScope::PlatformScope(Platform& platform) : former_(g_platform) { g_platform = &platform; }
PlatformScope::~PlatformScope() { g_platform = former_; }

}  // namespace kvo
