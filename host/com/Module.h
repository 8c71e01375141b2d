// The loaded module: its lifetime and its path.
#pragma once

#include <string>

#include "host/com/Ole.h"

namespace kvo::com {

// Keeps the module loaded: DllCanUnloadNow returns S_FALSE while one exists. Every COM object has
// one.
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
