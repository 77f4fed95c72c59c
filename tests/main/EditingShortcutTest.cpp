#include "WindowFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace brisko;
using namespace brisko::test;

namespace {

/// Something around a field that can redo, or says that it cannot.
class Responder : public QWidget {
  Q_OBJECT

 public:
  Q_INVOKABLE bool redo() {
    ++asked;
    return handles;
  }
  int asked = 0;
  bool handles = true;
};

class EditingShortcuts : public testing::Test {
 protected:
  EditingShortcuts() : field(new QLineEdit(&window)) {
    window.show();
    window.activateWindow();
    field->setFocus();
    QCoreApplication::processEvents();
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
    QTest::keyClick(field, key, modifiers);
  }

  Responder window;
  QLineEdit* field;
};

TEST_F(EditingShortcuts, CommandKeysReachTheFieldWithTheFocus) {
  field->setText("brisk");
  press(Qt::Key_A);
  press(Qt::Key_C);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "brisk");
  press(Qt::Key_X);
  EXPECT_EQ(field->text(), "");
  press(Qt::Key_V);
  press(Qt::Key_V);
  EXPECT_EQ(field->text(), "briskbrisk");
  press(Qt::Key_Z);
  EXPECT_EQ(field->text(), "brisk");
  press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(field->text(), "briskbrisk");
  EXPECT_EQ(window.asked, 0) << "the field itself redid";
}

TEST_F(EditingShortcuts, CapitalZIsTypedIntoAFieldThatCouldRedo) {
  field->insert("a");
  press(Qt::Key_Z);
  ASSERT_EQ(field->text(), "");
  ASSERT_TRUE(field->isRedoAvailable());
  window.handles = false;
  QTest::keyClick(field, 'Z', Qt::ShiftModifier);
  EXPECT_EQ(field->text(), "Z");
  QTest::keyClick(field, 'z');
  EXPECT_EQ(field->text(), "Zz");
}

TEST_F(EditingShortcuts, RedoIsConsumedOnlyByAResponderThatDidIt) {
  field->setReadOnly(true);
  press(Qt::Key_Z, Qt::ShiftModifier);
  EXPECT_EQ(window.asked, 1);
  window.handles = false;
  field->setReadOnly(false);
  press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier);
  EXPECT_GT(window.asked, 1);
}

TEST_F(EditingShortcuts, OtherModifiersAreNoShortcut) {
  field->setText("keep");
  field->selectAll();
  for (auto modifiers : {Qt::KeyboardModifiers(Qt::ControlModifier | Qt::AltModifier),
                         Qt::KeyboardModifiers(Qt::MetaModifier)}) {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_X, modifiers);
    QCoreApplication::sendEvent(field, &event);
  }
  EXPECT_EQ(field->text(), "keep");
}

}  // namespace

#include "EditingShortcutTest.moc"
