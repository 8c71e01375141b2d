// Preloaded before the C library (LD_PRELOAD), changes one of the program's system calls. KVO_FAIL
// selects it: "CALL NUMBER WHAT". NUMBER counts the calls of that name from 1. WHAT is
//
//   an error number      the call fails with it
//   short                from this call on, only a few bytes are read or written
//   zero                 from this call on, nothing is written, without an error
//   without              from this call on, malloc has no memory
//   dies-before          the program is killed before the call
//   dies-after           the program is killed after the call
//   ended-before         the program receives SIGTERM before the call
//   ended-after          the program receives SIGTERM after the call
//
// When it happens, creates the file named by KVO_FAIL_MARK. Includes none of the system headers
// that declare these functions, so that it can define them without their attributes.
#include <dlfcn.h>
#include <sys/syscall.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>

extern "C" long syscall(long number, ...) noexcept;
extern "C" void* __libc_malloc(std::size_t size);
extern "C" char** environ;

namespace {

enum class Fate { none, error, few, nothing, laterSignal };

constexpr std::size_t kFew = 4099;
constexpr int kCreate = 0100;    // O_CREAT
constexpr int kAtFolder = -100;  // AT_FDCWD

struct Plan {
  bool known = false;
  char call[16] = {};
  long number = 0;
  char what[16] = {};
};
Plan g_plan;
long g_calls = 0;

// Must not allocate, because malloc may be the function that fails.
void Learn() {
  if (environ == nullptr) return;  // the program is still being loaded
  g_plan.known = true;
  const char* text = std::getenv("KVO_FAIL");
  if (text == nullptr) return;
  const auto word = [&text](char* to, std::size_t room) {
    while (*text != '\0' && *text != ' ' && room > 1) {
      *to++ = *text++;
      --room;
    }
    if (*text == ' ') ++text;
  };
  char number[16] = {};
  word(g_plan.call, sizeof g_plan.call);
  word(number, sizeof number);
  word(g_plan.what, sizeof g_plan.what);
  g_plan.number = std::strtol(number, nullptr, 10);
}

bool Is(const char* what) { return std::strcmp(g_plan.what, what) == 0; }

void Mark() {
  const char* const file = std::getenv("KVO_FAIL_MARK");
  if (file == nullptr) return;
  const long descriptor = syscall(SYS_openat, kAtFolder, file, kCreate | 1, 0600);
  if (descriptor >= 0) syscall(SYS_close, descriptor);
}

void Signal() {
  syscall(SYS_kill, syscall(SYS_getpid), Is("dies-before") || Is("dies-after") ? SIGKILL : SIGTERM);
}

// Returns what to do with the current call; sets errno for an error.
Fate Meet(const char* call) {
  if (!g_plan.known) Learn();
  if (std::strcmp(call, g_plan.call) != 0) return Fate::none;
  ++g_calls;
  const bool lasting = Is("short") || Is("zero") || Is("without");
  if (g_calls != g_plan.number && !(lasting && g_calls > g_plan.number)) return Fate::none;
  if (g_calls == g_plan.number) Mark();
  if (Is("short")) return Fate::few;
  if (Is("zero")) return Fate::nothing;
  if (Is("dies-before") || Is("ended-before")) {
    Signal();
    return Fate::none;  // the program may clean up before it exits
  }
  if (Is("dies-after") || Is("ended-after")) return Fate::laterSignal;
  errno = Is("without") ? ENOMEM : static_cast<int>(std::strtol(g_plan.what, nullptr, 10));
  return Fate::error;
}

template <class Result, class... Parameters>
Result Real(const char* name, Parameters... parameters) {
  using Function = Result (*)(Parameters...);
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name))(parameters...);
}

// Either fails with -1 without making the call, or makes it.
template <class... Parameters>
int Call(const char* name, Parameters... parameters) {
  const Fate fate = Meet(name);
  if (fate == Fate::error) return -1;
  const int result = Real<int>(name, parameters...);
  if (fate == Fate::laterSignal) Signal();
  return result;
}

template <class Pointer>
long Transfer(const char* name, int descriptor, Pointer bytes, std::size_t size) {
  const Fate fate = Meet(name);
  if (fate == Fate::error) return -1;
  if (fate == Fate::nothing) return 0;
  if (fate == Fate::few && size > kFew) size = kFew;
  const long result = Real<long>(name, descriptor, bytes, size);
  if (fate == Fate::laterSignal) Signal();
  return result;
}

}  // namespace

extern "C" {

int open(const char* file, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const unsigned mode = (flags & kCreate) != 0 ? va_arg(rest, unsigned) : 0;
  va_end(rest);
  return Call("open", file, flags, mode);
}

int openat(int folder, const char* file, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const unsigned mode = (flags & kCreate) != 0 ? va_arg(rest, unsigned) : 0;
  va_end(rest);
  return Call("openat", folder, file, flags, mode);
}

// Closes the file even when it reports an error, as the system does.
int close(int descriptor) {
  const Fate fate = Meet("close");
  const int error = errno;
  const int result = Real<int>("close", descriptor);
  if (fate == Fate::laterSignal) Signal();
  if (fate != Fate::error) return result;
  errno = error;
  return -1;
}

long read(int descriptor, void* bytes, std::size_t size) {
  return Transfer("read", descriptor, bytes, size);
}
long write(int descriptor, const void* bytes, std::size_t size) {
  return Transfer("write", descriptor, bytes, size);
}

int fsync(int descriptor) { return Call("fsync", descriptor); }
int fdatasync(int descriptor) { return Call("fdatasync", descriptor); }
int rename(const char* from, const char* to) { return Call("rename", from, to); }
int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
  return Call("renameat", fromFolder, from, toFolder, to);
}
int unlink(const char* file) { return Call("unlink", file); }
int fchmod(int descriptor, unsigned mode) { return Call("fchmod", descriptor, mode); }
int fchown(int descriptor, unsigned user, unsigned group) {
  return Call("fchown", descriptor, user, group);
}
long getxattr(const char* file, const char* name, void* value, std::size_t size) {
  const Fate fate = Meet("getxattr");
  if (fate == Fate::error) return -1;
  const long result = Real<long>("getxattr", file, name, value, size);
  if (fate == Fate::laterSignal) Signal();
  return result;
}
int fsetxattr(int descriptor, const char* name, const void* value, std::size_t size, int flags) {
  return Call("fsetxattr", descriptor, name, value, size, flags);
}
int fremovexattr(int descriptor, const char* name) {
  return Call("fremovexattr", descriptor, name);
}
int getentropy(void* bytes, std::size_t size) { return Call("getentropy", bytes, size); }
int stat(const char* file, void* status) { return Call("stat", file, status); }
int lstat(const char* file, void* status) { return Call("lstat", file, status); }
int fstat(int descriptor, void* status) { return Call("fstat", descriptor, status); }
int access(const char* file, int mode) { return Call("access", file, mode); }
long readlink(const char* file, char* bytes, std::size_t size) {
  const Fate fate = Meet("readlink");
  return fate == Fate::error ? -1 : Real<long>("readlink", file, bytes, size);
}

void* mmap(void* at, std::size_t size, int protection, int flags, int descriptor, long offset) {
  const Fate fate = Meet("mmap");
  if (fate == Fate::error) return reinterpret_cast<void*>(-1L);
  return Real<void*>("mmap", at, size, protection, flags, descriptor, offset);
}

void* malloc(std::size_t size) noexcept {
  return Meet("malloc") == Fate::error ? nullptr : __libc_malloc(size);
}
}
