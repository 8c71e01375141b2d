#include "common/forms/FormActions.h"

#include <utility>

namespace kvo {

void FormActions::Act(const std::function<void()>& action) {
  if (IsUpdating()) return;
  const CountUp acting(acting_);
  try {
    action();
  } catch (const std::exception& failure) {
    onFailure(failure);
  }
}

void FormActions::ReportLater(std::exception_ptr failure) {
  failures_.push_back(std::move(failure));
  CallForReport();
}

void FormActions::ReportFailures() {
  for (const std::exception_ptr& failure : std::exchange(failures_, {}))
    Act([&failure] { std::rethrow_exception(failure); });
}

void FormActions::Update(const std::function<void()>& change) {
  const CountUp updating(updating_);
  change();
}

}  // namespace kvo
