#pragma once

#include <QApplication>

class QKeyEvent;

namespace brisko {

/// The application object. Before a key press goes its normal way it is looked at for the editing
/// shortcuts; Command is the Control key on this host.
class MyNSApplication : public QApplication {
  Q_OBJECT

 public:
  MyNSApplication(int& argc, char** argv);

  bool notify(QObject* receiver, QEvent* event) override;

  /// Sends an editing action ("cut", "copy", "paste", "undo", "redo", "selectAll") to the widget
  /// with the keyboard focus, then to those around it. True when one of them has that action and
  /// could do it. `typesText` says that the key would also type a letter.
  bool sendAction(const char* action, bool typesText);

 private:
  bool sendEditingShortcut(const QKeyEvent& event);
};

}  // namespace brisko
