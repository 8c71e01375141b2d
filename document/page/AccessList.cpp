#include "document/page/AccessList.h"

#ifdef __linux__
#include <sys/types.h>
#include <sys/xattr.h>

#include <cerrno>
#endif

namespace kvo::page {

#ifdef __linux__
namespace {

// The system returns the whole list under this name, so it can be copied as is.
constexpr const char* kAccessList = "system.posix_acl_access";

// Whether the file, its file system or the system has no access lists.
bool HasNone(int error) { return error == ENODATA || error == ENOTSUP || error == ENOSYS; }

}  // namespace

int CopyAccessList(const std::string& from, int to) {
  const ssize_t size = getxattr(from.c_str(), kAccessList, nullptr, 0);
  if (size < 0) {
    if (!HasNone(errno)) return errno;
    return fremovexattr(to, kAccessList) == 0 || HasNone(errno) ? 0 : errno;
  }
  std::string list(static_cast<std::size_t>(size), '\0');
  if (getxattr(from.c_str(), kAccessList, list.data(), list.size()) != size) return EIO;
  return fsetxattr(to, kAccessList, list.data(), list.size(), 0) == 0 ? 0 : errno;
}
#else
int CopyAccessList(const std::string& /*from*/, int /*to*/) { return 0; }  // there are none
#endif

}  // namespace kvo::page
