// The message-box service: the Qt boxes, the scripted boxes, and MsgBox.

#include <QMessageBox>
#include <utility>

#include "seluvorne/error.h"
#include "seluvorne/message_box.h"
#include "ui/application.h"

namespace seluvorne {

namespace {

bool Offers(MessageButtons buttons, MessageAnswer answer) {
  switch (buttons) {
    case MessageButtons::Ok:
      return answer == MessageAnswer::Ok;
    case MessageButtons::OkCancel:
      return answer == MessageAnswer::Ok || answer == MessageAnswer::Cancel;
    case MessageButtons::YesNo:
      return answer == MessageAnswer::Yes || answer == MessageAnswer::No;
  }
  return false;
}

MessageAnswer FirstButton(MessageButtons buttons) {
  return buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
}

class QtBoxes : public MessageBoxes {
 public:
  MessageAnswer Show(const MessageRequest& request) override {
    ui::EnsureApplication();
    QMessageBox box(IconOf(request.icon),
                    QString::fromStdString(request.title.empty() ? "SeluVorneDS" : request.title),
                    QString::fromStdString(request.text), ButtonsOf(request.buttons));
    switch (box.exec()) {
      case QMessageBox::Ok:
        return MessageAnswer::Ok;
      case QMessageBox::Cancel:
        return MessageAnswer::Cancel;
      case QMessageBox::Yes:
        return MessageAnswer::Yes;
      case QMessageBox::No:
        return MessageAnswer::No;
      default:
        break;
    }
    // A box closed without a button answers its escape button, as the runtime's box does.
    switch (request.buttons) {
      case MessageButtons::OkCancel:
        return MessageAnswer::Cancel;
      case MessageButtons::YesNo:
        return MessageAnswer::No;
      case MessageButtons::Ok:
        break;
    }
    return MessageAnswer::Ok;
  }

 private:
  static QMessageBox::Icon IconOf(MessageIcon icon) {
    switch (icon) {
      case MessageIcon::Information:
        return QMessageBox::Information;
      case MessageIcon::Warning:
        return QMessageBox::Warning;
      case MessageIcon::Critical:
        return QMessageBox::Critical;
      case MessageIcon::Question:
        return QMessageBox::Question;
      case MessageIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
  }
  static QMessageBox::StandardButtons ButtonsOf(MessageButtons buttons) {
    switch (buttons) {
      case MessageButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
      case MessageButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
      case MessageButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
  }
};

std::shared_ptr<MessageBoxes>& Installed() {
  static auto* installed = new std::shared_ptr<MessageBoxes>;  // never destroyed
  return *installed;
}

}  // namespace

MessageAnswer ScriptedMessageBoxes::Show(const MessageRequest& request) {
  shown_.push_back(request);
  if (answers_.empty()) return FirstButton(request.buttons);
  MessageAnswer answer = answers_.front();
  answers_.pop_front();
  if (!Offers(request.buttons, answer))
    Raise(errc::kInvalidCall, "(scripted answer " + std::to_string(static_cast<int>(answer)) +
                                  " is no button of the box \"" + request.text + "\")");
  return answer;
}

std::shared_ptr<MessageBoxes> QtMessageBoxes() {
  return std::make_shared<QtBoxes>();
}

void SetMessageBoxes(std::shared_ptr<MessageBoxes> boxes) {
  Installed() = std::move(boxes);
}

MessageBoxes& InstalledMessageBoxes() {
  if (!Installed()) Installed() = QtMessageBoxes();
  return *Installed();
}

MessageAnswer MsgBox(std::string text, MessageButtons buttons, MessageIcon icon,
                     std::string title) {
  return InstalledMessageBoxes().Show(
      MessageRequest{std::move(text), buttons, icon, std::move(title)});
}

}  // namespace seluvorne
