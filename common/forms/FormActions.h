// What every desktop's renderer needs to bring a form its user's actions. A page never includes
// this file.
#pragma once

#include <exception>
#include <functional>
#include <vector>

#include "common/forms/FormRenderer.h"

namespace kvo {

// Counts up as long as it lives.
class CountUp {
 public:
  explicit CountUp(int& count) : count_(count) { ++count_; }
  CountUp(const CountUp&) = delete;
  CountUp& operator=(const CountUp&) = delete;
  ~CountUp() { --count_; }

 private:
  int& count_;
};

// The way of the user's actions from the widgets to the form, and of its failures to whoever shows
// them.
class FormActions {
 public:
  FormActions() = default;
  FormActions(const FormActions&) = delete;
  FormActions& operator=(const FormActions&) = delete;

  // What a page's event throws when a user action raises it. Must be set; nothing escapes into the
  // toolkit. Called where it was caught, so that std::current_exception() is the failure itself.
  std::function<void(const std::exception&)> onFailure;

  // Performs what the user did. What the page throws is reported and goes no further. Does nothing
  // while a widget is being brought in step with the form: what it tells is no user's then.
  void Act(const std::function<void()>& action);
  // Reports a failure once the widgets have come to rest: for what fails while they paint.
  void ReportLater(std::exception_ptr failure);
  // Brings a widget in step with the form.
  virtual void Update(const std::function<void()>& change);
  bool IsUpdating() const { return updating_ > 0; }

  // Whether a user action is on its way: a page's event is on the stack, maybe behind a dialog that
  // it has opened.
  bool IsBusy() const { return acting_ > 0; }

 protected:
  ~FormActions() = default;

  // Has ReportFailures called as soon as whatever happens now is over.
  virtual void CallForReport() = 0;
  void ReportFailures();
  // Nobody listens to the widgets any more: for their end, of which they tell things, too.
  void EndActions() { ++updating_; }

 private:
  std::vector<std::exception_ptr> failures_;
  int acting_ = 0;
  int updating_ = 0;
};

}  // namespace kvo
