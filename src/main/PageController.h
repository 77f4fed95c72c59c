#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>

namespace brisko {

/// What every module page is to the shell. Pages are made once, in module-table order, and live for
/// the whole run; while hidden they keep their state, and work that they started goes on.
class PageController : public QObject {
  Q_OBJECT

 public:
  explicit PageController(int viewID) : viewID_(viewID), view_(new QWidget) {
    view_->setObjectName(QStringLiteral("page%1").arg(viewID));
  }
  ~PageController() override { delete view_; }

  /// The page's root view. Whoever puts it into a window owns it from then on.
  QWidget* getView() const { return view_; }

  /// The page's row in the module table, 0 to 9.
  int getViewID() const { return viewID_; }

  /// False while the page is busy with work that must not be left. Read on the main thread at each
  /// attempt to go to another page.
  virtual bool isCanClick() const { return true; }

 Q_SIGNALS:
  /// The user asked on this page for the page with this row.
  void pageRequested(int index);

 private:
  int viewID_;
  QPointer<QWidget> view_;
};

}  // namespace brisko
