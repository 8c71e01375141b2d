// The library as a loaded module: what keeps it loaded, and where it lies.
#pragma once

#include <string>

#include "host/com/Ole.h"

namespace kvo::com {

// As long as one lives, DllCanUnloadNow says no. Every COM object has one.
class ModuleLock {
 public:
  ModuleLock();
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;
  ~ModuleLock();

  static void Add();
  static void Remove();
  static long Count();
};

std::wstring ModulePath();

}  // namespace kvo::com
