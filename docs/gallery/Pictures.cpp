#include "Pictures.h"

#include "Dispatch.h"
#include "Theme.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QPixmap>
#include <QTimer>

#include <cstdio>

namespace brisko::test {
namespace {

QString folder;

}  // namespace

void setPictureFolder(const QString& chosen) {
  folder = chosen;
}

void settle(int milliseconds) {
  QElapsedTimer timer;
  timer.start();
  do {
    QApplication::processEvents(QEventLoop::AllEvents, 10);
    Dispatch::waitForBackground();
  } while (timer.elapsed() < milliseconds);
}

void saveNow(QWidget* widget, const char* name) {
  // A layout inside of another asks again.
  for (int depth = 0; depth < 4; ++depth)
    QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  QPixmap picture(widget->size() * 1);
  picture.fill(Qt::transparent);
  widget->render(&picture, {}, {}, QWidget::DrawWindowBackground | QWidget::DrawChildren);
  const QString path = QStringLiteral("%1/%2-%3.png")
                           .arg(folder, QLatin1String(name), Theme::shared().appearanceName());
  if (!picture.save(path)) std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
}

void save(QWidget* widget, const char* name) {
  settle();
  saveNow(widget, name);
}

void click(QWidget* page, const char* name) {
  page->findChild<QAbstractButton*>(QLatin1String(name))->click();
}

void answerNext(const char* picture, const char* answer) {
  auto* poll = new QTimer(qApp);
  QObject::connect(poll, &QTimer::timeout, [poll, picture, answer] {
    QWidget* panel = QApplication::activeModalWidget();
    if (panel == nullptr) return;
    delete poll;
    if (picture != nullptr) save(panel, picture);
    click(panel, answer);
  });
  poll->start(50);
}

void clickAndAnswer(QWidget* page, const char* button, const char* picture, const char* answer) {
  QTimer::singleShot(150, [picture, answer] {
    QWidget* panel = QApplication::activeModalWidget();
    save(panel, picture);
    click(panel, answer);
  });
  click(page, button);
}

}  // namespace brisko::test
