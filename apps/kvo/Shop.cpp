#include "apps/kvo/Shop.h"

#include "document/office/OfficeFile.h"

namespace kvo {

std::shared_ptr<office::Office> LoadOfficeWithShop(const std::string& file,
                                                   HeadlessPlatform& platform) {
  if (file.empty()) return nullptr;
  Shop shop = FindShop();
  platform.recordsets = std::move(shop.recordsets);
  return office::LoadOffice(file, std::move(shop.connections));
}

}  // namespace kvo
