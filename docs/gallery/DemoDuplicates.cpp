#include "DemoDuplicates.h"

#include <QImage>
#include <QPainter>

#include <filesystem>
#include <fstream>

#include <utime.h>

namespace fs = std::filesystem;

namespace brisko::test {
namespace {

// A lake below a low sun, in the given light.
void drawLake(const fs::path& path, QColor sky, QColor light, QColor water) {
  QImage picture(1200, 900, QImage::Format_RGB32);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient air(0, 0, 0, 560);
  air.setColorAt(0, sky);
  air.setColorAt(1, light);
  painter.fillRect(picture.rect(), air);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(255, 244, 214));
  painter.drawEllipse(QPointF(760, 450), 86, 86);
  painter.setBrush(sky.darker(170));
  painter.drawPolygon(QPolygonF({{0, 560}, {0, 380}, {210, 260}, {420, 470}, {640, 560}}));
  painter.setBrush(sky.darker(210));
  painter.drawPolygon(QPolygonF({{560, 560}, {900, 400}, {1040, 330}, {1200, 430}, {1200, 560}}));
  QLinearGradient lake(0, 560, 0, 900);
  lake.setColorAt(0, light.darker(115));
  lake.setColorAt(1, water);
  painter.fillRect(QRect(0, 560, 1200, 340), lake);
  painter.setBrush(QColor(255, 244, 214, 90));
  for (int i = 0; i < 9; ++i)
    painter.drawRoundedRect(QRectF(700 - 12 * i, 582 + 34 * i, 120 + 24 * i, 7), 3, 3);
  painter.end();
  picture.save(QString::fromStdString(path.string()));
}

void write(const fs::path& path, const std::string& text, std::size_t size) {
  std::ofstream(path, std::ios::binary) << text;
  if (size > 0) fs::resize_file(path, size);
}

// A copy is some days younger than what it was made from; always the same days.
void age(const fs::path& path, int days) {
  constexpr time_t kFirst = 1'760'000'000;
  const utimbuf times{kFirst, kFirst + days * 86'400};
  ::utime(path.c_str(), &times);
}

void copy(const fs::path& from, const fs::path& to, int days) {
  fs::create_directories(to.parent_path());
  fs::copy_file(from, to);
  age(from, 0);
  age(to, days);
}

}  // namespace

void makeDemoDuplicates(const std::string& folder) {
  const fs::path root(folder);
  fs::remove_all(root);
  fs::create_directories(root / "Summer");
  const fs::path lake = root / "Summer/Lake at dusk.png";
  drawLake(lake, QColor(74, 92, 158), QColor(246, 176, 138), QColor(44, 62, 112));
  copy(lake, root / "Backup/Lake at dusk copy.png", 3);
  copy(lake, root / "Phone/IMG_2041.png", 9);
  const fs::path dawn = root / "Summer/Dawn.png";
  drawLake(dawn, QColor(112, 160, 196), QColor(252, 222, 190), QColor(70, 112, 140));
  copy(dawn, root / "Backup/Dawn.png", 3);
  const fs::path film = root / "Summer/Crossing the lake.mp4";
  write(film, "film", 48'600'000);
  copy(film, root / "Phone/VID_0098.mp4", 9);
  const fs::path archive = root / "Backup/Photos 2024.zip";
  write(archive, "archive", 21'300'000);
  copy(archive, root / "Backup/Photos 2024 (1).zip", 1);
  const fs::path list = root / "Summer/Packing list.txt";
  write(list,
        "Packing list\n\nTent, poles and pegs\nTwo sleeping bags\nStove and gas\nMap of the "
        "northern shore\nFirst-aid kit\nRain jackets\nTorch\nCamera, spare battery\n",
        0);
  copy(list, root / "Backup/Packing list.txt", 3);
  const fs::path guide = root / "Summer/Guide to the \"North\nShore\".pdf";
  write(guide, "guide", 3'410'000);
  copy(guide, root / "Phone/Guide.pdf", 9);
  const fs::path data = root / "Phone/track.gpx";
  write(data, "<gpx/>", 240'000);
  fs::create_hard_link(data, root / "Summer/track.gpx");
  age(data, 9);
  for (int i = 0; i < 400; ++i)
    write(root / "Phone" / ("note" + std::to_string(i) + ".dat"), std::to_string(i), 0);
}

}  // namespace brisko::test
