// Reads events in a control's property pages from bytes, for any kind of user to perform.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/forms/PropertyFrame.h"
#include "common/frame/Control.h"
#include "fuzz/Bytes.h"
#include "host/headless/HeadlessPlatform.h"
#include "host/script/FormUser.h"
#include "tests/forms/FakeRecordset.h"
#include "tests/pages/FakeOffice.h"

namespace kvo {

// A story consists of
// - a line with two characters: the class, and "0" for the class's own pages or the number of a
//   single page of any class;
// - the control's bag (format: fuzz/StoryBag.h), up to an empty line;
// - events, either in the visible page (format: fuzz/UserEvents.h) or of the frame around it:
//     A apply   P show another page   S the host selects the control again
//     G the database goes away or comes back   C the connection is closed or opened
//     N answer of the next prompt (a line)   F of the next colour dialog (three characters)
class PageStory : private PropertyFrame::Window {
 public:
  explicit PageStory(std::string_view bytes);
  ~PageStory() override = default;
  PageStory(const PageStory&) = delete;
  PageStory& operator=(const PageStory&) = delete;

  // Plays the story to its end. Does nothing when the control cannot be loaded.
  void Play();

 protected:
  virtual std::unique_ptr<FormUser> MakeUser(Form& form) = 0;

  // --- events to override; an exception ends the story ---
  virtual void Loaded() {}
  virtual void Opened() {}
  // A user performed an event in a form. `outcome` comes from PerformEvent(), or is "fails" after
  // an exception without a number.
  virtual void Acted(Form& /*form*/, char /*event*/, const std::string& /*outcome*/) {}
  virtual void Threw(const std::exception& /*error*/) {}
  // An event in the frame or in the visible page has ended.
  virtual void Performed(char /*event*/) {}
  virtual void Apply() { frame_->Apply(); }
  virtual void Cancelled() {}

  HeadlessPlatform& Platform() { return platform_; }
  FakeTable& Table() { return table_; }
  FakeConnection& Connection() { return *connection_; }
  FakeOffice& Office() { return *office_; }
  const std::shared_ptr<Control>& Subject() const { return control_; }
  PropertyFrame& Frame() { return *frame_; }
  const std::vector<std::string>& PageNames() const { return pages_; }
  bool ApplyEnabled() const { return applyEnabled_; }
  bool IsClosed() const { return closed_; }
  // The number of errors that the frame showed.
  int Errors() const { return errors_; }

 private:
  // Makes the same identifiers in every run.
  class StoryPlatform final : public HeadlessPlatform {
   public:
    GuidText NewGuid() override;

   private:
    int made_ = 0;
  };

  // --- PropertyFrame::Window ---
  void ApplyEnabledChanged() override { applyEnabled_ = !applyEnabled_; }
  void ShowError(PropertyPage& page, const std::exception& error) override;
  void Closed() override { closed_ = true; }

  bool LoadControl();
  bool Over();
  FormUser& UserOfShownPage();
  ColorNumber ReadColor();
  void Act(char event, Form& form, FormUser& user);
  void PlayDialog(Form& form);
  void PlayEvent(char event);

  Bytes story_;
  StoryPlatform platform_;
  PlatformScope scope_{platform_};
  FakeTable table_;
  std::shared_ptr<FakeConnection> connection_ = std::make_shared<FakeConnection>();
  std::shared_ptr<FakeOffice> office_ = std::make_shared<FakeOffice>();
  std::shared_ptr<Control> control_;
  std::vector<std::string> pages_;
  std::unique_ptr<PropertyFrame> frame_;
  std::vector<std::unique_ptr<FormUser>> users_;  // one for each page, from its first display
  bool applyEnabled_ = false;
  bool closed_ = false;
  int errors_ = 0;
  int events_ = 0;
};

}  // namespace kvo
