// Runs user actions for the desktop renderers. Pages never include this file.
#pragma once

#include <exception>
#include <functional>
#include <vector>

#include "common/forms/FormRenderer.h"

namespace kvo {

// Keeps a count incremented during its lifetime.
class CountUp {
 public:
  explicit CountUp(int& count) : count_(count) { ++count_; }
  CountUp(const CountUp&) = delete;
  CountUp& operator=(const CountUp&) = delete;
  ~CountUp() { --count_; }

 private:
  int& count_;
};

// Passes user actions from the widgets to the form and reports failures.
class FormActions {
 public:
  FormActions() = default;
  FormActions(const FormActions&) = delete;
  FormActions& operator=(const FormActions&) = delete;

  // Receives what a page's event throws during a user action. Must be set; nothing escapes into the
  // toolkit. Called inside the catch block, so that std::current_exception() is the failure.
  std::function<void(const std::exception&)> onFailure;

  // Runs a user action and reports what it throws. Does nothing while a widget is updated from the
  // form: its signals come from us then, not from the user.
  void Act(const std::function<void()>& action);
  // Reports a failure after the current event, for failures during painting.
  void ReportLater(std::exception_ptr failure);
  // Updates a widget from the form.
  virtual void Update(const std::function<void()>& change);
  bool IsUpdating() const { return updating_ > 0; }

  // Whether a user action is running: a page's event is on the stack, possibly below a dialog that
  // it opened.
  bool IsBusy() const { return acting_ > 0; }

 protected:
  ~FormActions() = default;

  // Schedules ReportFailures for after the current event.
  virtual void CallForReport() = 0;
  void ReportFailures();
  // Ignores signals during widget destruction.
  void EndActions() { ++updating_; }

 private:
  std::vector<std::exception_ptr> failures_;
  int acting_ = 0;
  int updating_ = 0;
};

}  // namespace kvo
