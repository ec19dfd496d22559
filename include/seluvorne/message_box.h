// Message boxes, through one small service so that tests can answer them.
//
// The library's windows ask MsgBox; it shows the box through the installed
// service: the Qt message box by default, or a ScriptedMessageBoxes that a
// test (or a host without a user) installs to answer from a script.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace seluvorne {

enum class MessageButtons { Ok, OkCancel, YesNo };
enum class MessageIcon { None, Information, Warning, Critical, Question };
// The runtime's answer numbers.
enum class MessageAnswer { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

struct MessageRequest {
  std::string text;
  MessageButtons buttons = MessageButtons::Ok;
  MessageIcon icon = MessageIcon::None;
  std::string title;  // empty: the library's name
};

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  // Shows the box and answers the button the user chose.
  virtual MessageAnswer Show(const MessageRequest& request) = 0;
};

// Answers from a script and keeps every box it was asked to show. With the
// script exhausted it answers the box's first button (Ok, or Yes). A scripted
// answer that is not a button of the box raises 5.
class ScriptedMessageBoxes : public MessageBoxes {
 public:
  // Queues the answer to the next box.
  void Script(MessageAnswer answer) { answers_.push_back(answer); }
  MessageAnswer Show(const MessageRequest& request) override;
  const std::vector<MessageRequest>& shown() const { return shown_; }

 private:
  std::deque<MessageAnswer> answers_;
  std::vector<MessageRequest> shown_;
};

// The real boxes (QMessageBox), modal over the application.
std::shared_ptr<MessageBoxes> QtMessageBoxes();

// Installs the service MsgBox uses; nullptr goes back to the Qt boxes.
void SetMessageBoxes(std::shared_ptr<MessageBoxes> boxes);
MessageBoxes& InstalledMessageBoxes();

// The runtime's MsgBox.
MessageAnswer MsgBox(std::string text, MessageButtons buttons = MessageButtons::Ok,
                     MessageIcon icon = MessageIcon::None, std::string title = {});

}  // namespace seluvorne
