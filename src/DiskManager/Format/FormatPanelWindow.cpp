#include "FormatPanelWindow.h"

#include "Theme.h"
#include "TitleBar.h"

#include <QVBoxLayout>

namespace brisko {

FormatPanelWindow::FormatPanelWindow(QWidget* parent) : PanelWindow(parent) {
  setObjectName(QStringLiteral("formatPanel"));
}

void FormatPanelWindow::host(QWidget* panel) {
  auto* column = new QVBoxLayout(contentView());
  column->setContentsMargins(Space::wide, Space::small, Space::wide, Space::wide);
  column->addWidget(panel);
}

void FormatPanelWindow::setClosable(bool closable) {
  isClosable_ = closable;
  titleBarView()->closeButton()->setEnabled(closable);
}

void FormatPanelWindow::reject() {
  if (isClosable_) PanelWindow::reject();
}

}  // namespace brisko
