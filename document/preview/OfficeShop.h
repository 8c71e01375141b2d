// The products of an office's shop, for a preview.
#pragma once

#include "common/values/Object.h"
#include "document/preview/Template.h"

namespace kvo::preview {

// Reads each product once, many in one statement; never writes.
class OfficeShop final : public Shop {
 public:
  explicit OfficeShop(ObjectRef office);
  ~OfficeShop() override;

  std::vector<std::optional<Product>> Find(const std::vector<std::string>& numbers,
                                           std::optional<Message>& failure) override;

 private:
  struct Asked;
  std::unique_ptr<Asked> asked_;
};

}  // namespace kvo::preview
