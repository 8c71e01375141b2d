// The shop of an office, for the commands that show property pages or look products up.
//
// kvo links no database library, so that it starts in milliseconds and builds on machines that have
// none. kvo-shop, which stands beside it, is the same program with these libraries. It is another
// program and no library that kvo loads, because a loaded one would bring a second core and a
// second C++ runtime along: kvo has both linked into itself, which is what makes it start so fast.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "document/office/Office.h"
#include "host/headless/HeadlessPlatform.h"

namespace kvo {

// What opens shop databases, as an office and a platform take it.
struct Shop {
  office::ConnectionFactory connections;
  std::function<ObjectRef()> recordsets;
};

// In kvo-shop, its own. In kvo, this does not return: it starts over as kvo-shop, so nothing may
// have been read from standard input or printed before. Where kvo-shop cannot be started it returns
// a shop without connections, which says so when the first one is asked for.
Shop FindShop();

// The office of a file with its shop, whose recordsets the platform gets; none without a file. To
// be called as FindShop is.
std::shared_ptr<office::Office> LoadOfficeWithShop(const std::string& file,
                                                   HeadlessPlatform& platform);

}  // namespace kvo
