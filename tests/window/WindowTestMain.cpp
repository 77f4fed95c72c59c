#include "BriskoStyle.h"
#include "Machine.h"
#include "MainQueuePump.h"
#include "MyNSApplication.h"
#include "Theme.h"
#include "UnlinkGuard.h"

#include <gtest/gtest.h>

#include <clocale>

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "C");
  brisko::test::UnlinkGuard::allow(brisko::test::buildTree());
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("BRISKO_THEME", "light");
  brisko::MyNSApplication application(argc, argv);
  const brisko::MainQueuePump pump;
  QApplication::setStyle(new brisko::BriskoStyle);
  brisko::Theme::shared().followDesktop();
  return RUN_ALL_TESTS();
}
