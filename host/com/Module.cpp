#include "host/com/Module.h"

#include <atomic>

#include "host/win32/OwnWindow.h"

namespace kvo::com {
namespace {

std::atomic<long> locks = 0;

}  // namespace

ModuleLock::ModuleLock() { Add(); }
ModuleLock::~ModuleLock() { Remove(); }
void ModuleLock::Add() { ++locks; }
void ModuleLock::Remove() { --locks; }
long ModuleLock::Count() { return locks; }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace kvo::com
