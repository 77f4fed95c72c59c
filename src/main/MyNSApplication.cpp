#include "MyNSApplication.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextEdit>
#include <QWidget>

namespace brisko {
namespace {

// A text field would take the letter, and it is written there, not lost to a shortcut: of the keys
// that type, a field answers none. Of the rest it answers redo only when there is something to
// redo.
bool answersRedo(const QWidget* widget, bool typesText) {
  if (const auto* line = qobject_cast<const QLineEdit*>(widget)) {
    return !(typesText && !line->isReadOnly()) && line->isRedoAvailable();
  }
  if (const auto* text = qobject_cast<const QTextEdit*>(widget)) {
    return !(typesText && !text->isReadOnly()) && text->document()->isRedoAvailable();
  }
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget)) {
    return !(typesText && !text->isReadOnly()) && text->document()->isRedoAvailable();
  }
  return !widget->inputMethodQuery(Qt::ImEnabled).toBool() || !typesText;
}

// Whether the widget took the action. An action that answers yes or no says so itself.
bool perform(QWidget* widget, const QByteArray& action) {
  const int index = widget->metaObject()->indexOfMethod(action + "()");
  if (index < 0) return false;
  const QMetaMethod method = widget->metaObject()->method(index);
  if (method.returnType() == QMetaType::Bool) {
    bool handled = false;
    return method.invoke(widget, Qt::DirectConnection, Q_RETURN_ARG(bool, handled)) && handled;
  }
  return method.invoke(widget, Qt::DirectConnection);
}

const char* commandAction(int key) {
  switch (key) {
    case Qt::Key_X:
      return "cut";
    case Qt::Key_C:
      return "copy";
    case Qt::Key_V:
      return "paste";
    case Qt::Key_Z:
      return "undo";
    case Qt::Key_A:
      return "selectAll";
    default:
      return nullptr;
  }
}

}  // namespace

MyNSApplication::MyNSApplication(int& argc, char** argv) : QApplication(argc, argv) {
  setApplicationName(QStringLiteral("brisko"));
  setApplicationDisplayName(QStringLiteral("Brisko"));
  setApplicationVersion(QStringLiteral(BRISKO_VERSION));
  setDesktopFileName(QStringLiteral("com.brisko.Brisko"));
  // Closing the window leaves the program running with its menu-bar item.
  setQuitOnLastWindowClosed(false);
}

bool MyNSApplication::notify(QObject* receiver, QEvent* event) {
  // A widget gets a shortcut's key as an override request first and may claim it for good then; so
  // that is the moment at which an action can still go before it.
  if (event->type() == QEvent::KeyPress && sendEditingShortcut(*static_cast<QKeyEvent*>(event))) {
    event->accept();
    return true;
  }
  return QApplication::notify(receiver, event);
}

bool MyNSApplication::sendEditingShortcut(const QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers();
  if (modifiers == Qt::ControlModifier) {
    const char* action = commandAction(event.key());
    return action != nullptr && sendAction(action, false);
  }
  // A capital Z, with whatever modifiers, asks for redo.
  const bool isCapital = (modifiers & Qt::ShiftModifier) != 0 || event.text() == QLatin1String("Z");
  if (event.key() != Qt::Key_Z || !isCapital) return false;
  const bool typesText = (modifiers & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == Qt::NoModifier;
  return sendAction("redo", typesText);
}

bool MyNSApplication::sendAction(const char* action, bool typesText) {
  const bool isRedo = qstrcmp(action, "redo") == 0;
  for (QWidget* responder = focusWidget(); responder != nullptr;
       responder = responder->parentWidget()) {
    if (!responder->isEnabled() || (isRedo && !answersRedo(responder, typesText))) continue;
    if (perform(responder, action)) return true;
    if (responder->isWindow()) break;
  }
  return false;
}

}  // namespace brisko
