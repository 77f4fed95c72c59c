#include "LargeFileKinds.h"

#include "LocalizedString.h"
#include "Theme.h"
#include "fileAttrbItem.h"

#include <QDateTime>
#include <QLocale>

#include <array>
#include <string>
#include <string_view>

#include <strings.h>

namespace brisko {
namespace {

constexpr std::uint64_t kGreenFrom = 1'000'000;
constexpr std::uint64_t kOrangeFrom = 1'000'000'000;
constexpr std::uint64_t kRedFrom = 1'000'000'000'000;

// Of like lightness, told apart by hue; the last is for what has no type.
constexpr std::array<QRgb, kLargeFileKinds> kLight = {
    0xffd9deea, 0xff6f86f7, 0xffe0719c, 0xffa77be8, 0xffe0a34a, 0xff3fb3a0, 0xff93a0b8};
constexpr std::array<QRgb, kLargeFileKinds> kDark = {0xff2f3647, 0xff5468d8, 0xffb9527d, 0xff8459c4,
                                                     0xffb17d2f, 0xff2b8778, 0xff66728a};

// Types that the search for duplicates does not tell apart, by the numbers of its segments.
std::size_t kindOfOther(std::string_view extension) {
  struct Row {
    std::string_view extension;
    std::size_t kind;
  };
  constexpr std::size_t kVideos = 2;
  constexpr std::size_t kMusic = 3;
  constexpr std::size_t kArchives = 4;
  constexpr std::size_t kPictures = 5;
  constexpr Row kRows[] = {
      {"mkv", kVideos},   {"webm", kVideos},   {"m4v", kVideos},    {"ts", kVideos},
      {"flac", kMusic},   {"ogg", kMusic},     {"opus", kMusic},    {"m4a", kMusic},
      {"wav", kMusic},    {"aiff", kMusic},    {"gz", kArchives},   {"xz", kArchives},
      {"bz2", kArchives}, {"zst", kArchives},  {"tgz", kArchives},  {"7z", kArchives},
      {"tar", kArchives}, {"iso", kArchives},  {"deb", kArchives},  {"rpm", kArchives},
      {"tif", kPictures}, {"tiff", kPictures}, {"webp", kPictures}, {"heic", kPictures},
      {"svg", kPictures}, {"cr2", kPictures},  {"nef", kPictures},  {"dng", kPictures}};
  const auto isSame = [extension](std::string_view known) {
    return known.size() == extension.size() &&
           strncasecmp(known.data(), extension.data(), known.size()) == 0;
  };
  for (const Row& row : kRows) {
    if (isSame(row.extension)) return row.kind;
  }
  return kOtherTypes;
}

}  // namespace

std::size_t largeFileKind(const FileNode& node) {
  if (node._isDirectory()) return 0;
  const std::string extension(pathExtension(node._name()));
  const int found = duplicateClass(extension);
  if (found == kOtherTypes) return kindOfOther(extension);
  return duplicateSegment(found);
}

QString largeFileKindTitle(std::size_t kind) {
  if (kind == 0) return getLocalizedString("Folders");
  return getLocalizedString(std::string(kDuplicateTitles[kind]).c_str());
}

QColor largeFileKindColor(std::size_t kind) {
  return QColor::fromRgba((Theme::shared().isDark() ? kDark : kLight)[kind]);
}

const char* largeFileImage(const FileNode& node) {
  constexpr std::array<const char*, kLargeFileKinds> kImages = {
      "ic_folder", "ic_file", "ic_video", "ic_itunes", "ic_archive", "ic_picture", "ic_file"};
  return kImages[largeFileKind(node)];
}

QString modificationDateText(const FileNode& node) {
  if (!node.isLooked) return {};
  const auto moment = QDateTime::fromSecsSinceEpoch(node.modificationSeconds);
  return QLocale().toString(moment, QLocale::ShortFormat);
}

QColor sizeColor(std::uint64_t bytes) {
  if (bytes >= kRedFrom) return QColor(Qt::red);
  if (bytes >= kOrangeFrom) return getColor(255, 127.5, 0, 1);
  if (bytes >= kGreenFrom) return getColor(85, 215, 135, 1);
  return Theme::shared().isDark() ? themeColor(Theme::Token::text) : QColor(Qt::black);
}

}  // namespace brisko
