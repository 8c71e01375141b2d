#include "host/com/Module.h"

#include <atomic>

namespace kvo::com {
namespace {

std::atomic<long> locks = 0;
HINSTANCE theModule = nullptr;

}  // namespace

ModuleLock::ModuleLock() { Add(); }
ModuleLock::~ModuleLock() { Remove(); }
void ModuleLock::Add() { ++locks; }
void ModuleLock::Remove() { --locks; }
long ModuleLock::Count() { return locks; }

void SetModule(HINSTANCE module) { theModule = module; }
HINSTANCE Module() { return theModule; }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(theModule, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace kvo::com
