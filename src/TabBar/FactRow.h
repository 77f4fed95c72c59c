#pragma once

#include <QWidget>

#include <utility>
#include <vector>

namespace brisko {

/// Facts side by side, each a small heading over a text. A text that does not fit is cut off and
/// told whole under the pointer.
class FactRow : public QWidget {
  Q_OBJECT

 public:
  using Fact = std::pair<QString, QString>;  ///< heading and text

  explicit FactRow(QWidget* parent = nullptr);

  /// Facts without a text are left out.
  void setFacts(std::vector<Fact> facts);
  const std::vector<Fact>& facts() const { return facts_; }

  QSize sizeHint() const override { return {600, 38}; }
  QSize minimumSizeHint() const override { return {200, 38}; }

  /// `wanted` widths brought down to `room` together: those above a common limit are cut to it.
  static std::vector<int> fairWidths(std::vector<int> wanted, int room);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  std::vector<QRect> places() const;

  std::vector<Fact> facts_;
};

}  // namespace brisko
