#include "LeftViewCtl.h"

#include "LeftCellViewCtr.h"
#include "LocalizedString.h"
#include "ModuleTable.h"
#include "Theme.h"
#include "ViewMan.h"
#include "ui_LeftViewCtl.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>

#include <algorithm>

namespace brisko {
namespace {

constexpr int kGap = 1;
constexpr int kHeadingGap = 7;
constexpr int kFirstCellTop = 12;

/// The tinted ground, with the window's lower left corner.
class SidebarView : public QWidget {
 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(themeColor(Theme::Token::sidebar));
    painter.setClipRect(rect());
    // Taller and wider than the view, so that only the lower left corner is seen to be round; one
    // point short of the window's edge, which shows beside it.
    const bool isZoomed = window()->isMaximized() || window()->isFullScreen();
    const qreal radius =
        isZoomed || !window()->testAttribute(Qt::WA_TranslucentBackground) ? 0 : 11;
    painter.drawRoundedRect(QRectF(1, -20, width() + 20, height() + 19), radius, radius);
    painter.setPen(themeColor(Theme::Token::border));
    painter.drawLine(QPointF(width() - 0.5, 0), QPointF(width() - 0.5, height()));
  }
};

}  // namespace

LeftViewCtl::LeftViewCtl(QObject* parent)
    : QObject(parent), ui_(std::make_unique<Ui::LeftViewCtl>()), view_(new SidebarView) {
  ui_->setupUi(view_);
  cleanupView = ui_->cleanupView;
  viewTools = ui_->viewTools;
  privacyView = ui_->privacyView;
  cleanupLabel = ui_->cleanupLabel;
  toolLabel = ui_->toolLabel;
  privacyLabel = ui_->privacyLabel;
  awakeFromNib();
}

LeftViewCtl::~LeftViewCtl() = default;

void LeftViewCtl::awakeFromNib() {
  cleanupLabel->setText(getLocalizedString("Cleanup").toUpper());
  toolLabel->setText(getLocalizedString("Tools").toUpper());
  privacyLabel->setText(getLocalizedString("Privacy").toUpper());
  for (QLabel* label : {cleanupLabel, toolLabel, privacyLabel}) {
    QFont font = Theme::shared().font(11, QFont::DemiBold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.8);
    label->setFont(font);
  }
  view_->setAccessibleName(getLocalizedString("Modules"));
  createCellView();
  connect(&Theme::shared(), &Theme::changed, this, [this] {
    for (const auto& item : cellObjs)
      item->CellCtl->refreshCellView();
  });
}

void LeftViewCtl::createCellView() {
  QRect rect(0, kFirstCellTop, kWidth, kCellHeight);
  for (const Module& module : moduleTable()) {
    auto item = std::make_shared<LeftCellItem>();
    item->CellName = getLocalizedString(module.label);
    item->CellIcon = module.icon;
    item->CellSelIcon = module.selectedIcon;
    item->CellID = module.index;
    item->CellSelected = module.index == 0;
    auto* cell = new LeftCellViewCtr(this);
    cell->setItem(item);
    cell->delegate = this;
    cell->refreshCellView();
    cell->view()->setParent(view_);
    cell->view()->setGeometry(rect);
    connect(cell->view(), &LeftCellView::moveRequested, this,
            [this, row = module.index](int rows) { moveFocus(row + rows); });
    item->CellCtl = cell;
    cellObjs.push_back(std::move(item));
    rect = getNextRect(rect, module.index);
  }
}

QRect LeftViewCtl::getNextRect(const QRect& rect, int iID) const {
  const QWidget* heading = iID == 0   ? cleanupView
                           : iID == 4 ? viewTools
                           : iID == 7 ? privacyView
                                      : nullptr;
  const int top =
      heading != nullptr ? heading->y() + kCellHeight + kHeadingGap : rect.y() + kCellHeight + kGap;
  return {rect.x(), top, kWidth, kCellHeight};
}

void LeftViewCtl::selectCellView(const std::shared_ptr<LeftCellItem>& item) {
  for (const auto& each : cellObjs) {
    each->CellSelected = each == item;
    each->CellCtl->refreshCellView();
  }
  ViewMan::returnViewMan().showView(item->CellID);
}

void LeftViewCtl::moveFocus(int row) {
  const int last = static_cast<int>(cellObjs.size()) - 1;
  cellObjs[static_cast<std::size_t>(std::clamp(row, 0, last))]->CellCtl->view()->setFocus(
      Qt::TabFocusReason);
}

}  // namespace brisko
