#include "document/preview/OfficeShop.h"

#include <utility>

#include "document/check/Products.h"

namespace kvo::preview {
namespace {

constexpr Localized kNoShop{"Ohne die Datenbank des Shops lassen sich Produkte nicht nachschlagen.",
                            "Products cannot be looked up without the shop's database."};
constexpr Localized kOddNumber{"Nummern mit solchen Zeichen werden nicht nachgeschlagen.",
                               "Numbers with such characters are not looked up."};

Message Copy(const Localized& text) {
  return {std::string(text.german), std::string(text.english)};
}

}  // namespace

struct OfficeShop::Asked {
  check::ShopProducts products;
  std::optional<Message> failure{};  // the first one; the shop is not asked again after it
};

OfficeShop::OfficeShop(ObjectRef office)
    : asked_(new Asked{
          check::ShopProducts(std::move(office), check::ShopProducts::Read::descriptions)}) {}
OfficeShop::~OfficeShop() = default;

std::vector<std::optional<Product>> OfficeShop::Find(const std::vector<std::string>& numbers,
                                                     std::optional<Message>& failure) {
  if (auto reason = asked_->products.LookUp(numbers)) asked_->failure = std::move(reason);
  std::vector<std::optional<Product>> found;
  for (const std::string& number : numbers) {
    const check::ShopProduct* product = asked_->products.Find(number);
    if (product != nullptr)
      found.emplace_back(Product{product->number, product->description, product->description2});
    else
      found.emplace_back();
    if (product != nullptr || asked_->products.IsUnknown(number)) continue;
    if (!check::CanBeLookedUp(number))
      failure = Copy(kOddNumber);
    else
      failure = asked_->failure ? *asked_->failure : Copy(kNoShop);
  }
  return found;
}

}  // namespace kvo::preview
