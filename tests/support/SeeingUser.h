// A headless user who records the form's notifications about its controls.
#pragma once

#include "host/script/HeadlessUser.h"

namespace kvo {

class SeeingUser final : public HeadlessUser {
 public:
  using HeadlessUser::HeadlessUser;

  struct Seen {
    std::string_view control;
    Aspect aspect;
    bool operator==(const Seen&) const = default;
  };
  std::vector<Seen> seen;  // in order

 private:
  void ControlChanged(FormControl& control, Aspect aspect) override {
    seen.push_back({control.Name(), aspect});
    HeadlessUser::ControlChanged(control, aspect);
  }
  void ItemChanged(PropertyGridItem& item) override {
    seen.push_back({item.Grid().Name(), Aspect::value});
    HeadlessUser::ItemChanged(item);
  }
};

}  // namespace kvo
