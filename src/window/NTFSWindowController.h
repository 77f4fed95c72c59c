#pragma once

#include "NoticeWindow.h"

namespace brisko {

/// Says that a chosen item lies on an NTFS volume, where this system may not be able to erase it.
class NTFSWindowController : public NoticeWindow {
  Q_OBJECT

 public:
  explicit NTFSWindowController(QWidget* parent = nullptr);

  QPushButton* yesButton;  ///< closes it
};

}  // namespace brisko
