#include "DuplicateTypes.h"

#include <algorithm>
#include <span>
#include <unordered_map>

namespace brisko {
namespace {

// "tar.gz" and "tar.bz2" never match, because an extension has no dot in it.
constexpr std::string_view kDocuments[] = {
    "doc", "docx", "xls", "xlsx", "mpp", "ppt", "pptx", "txt",  "rtf", "pdf",   "odt",
    "ott", "ods",  "odg", "odf",  "odb", "odp", "htm",  "html", "xml", "pages", "key"};
constexpr std::string_view kMusic[] = {"wav", "aiff", "au",  "mp3", "midi",
                                       "wma", "acc",  "ape", "ra",  "aac"};
constexpr std::string_view kVideos[] = {"avi",  "rmvb", "rm",  "3gp", "3g2", "flv",
                                        "mpeg", "mpg",  "qt",  "qtm", "qtx", "mov",
                                        "mpe",  "mp4",  "m4v", "mkv", "wmv", "ogg"};
constexpr std::string_view kArchives[] = {"zip", "rar", "tar", "tar.gz", "tar.bz2"};
constexpr std::string_view kPictures[] = {"bmp",  "jpg", "png",  "ico", "gif", "tiff",
                                          "jpeg", "tga", "exif", "fpx", "svg", "psd",
                                          "cdr",  "pcd", "dxf",  "ufo", "eps"};

// In the order of the class numbers.
constexpr std::span<const std::string_view> kLists[] = {kDocuments, kMusic, kVideos, kArchives,
                                                        kPictures};

std::unordered_map<std::string_view, int> classOfEach() {
  std::unordered_map<std::string_view, int> classes;
  int number = 1;
  for (const auto list : kLists) {
    for (const std::string_view extension : list)
      classes.emplace(extension, number);
    ++number;
  }
  return classes;
}

}  // namespace

int duplicateClass(std::string_view extendName) {
  constexpr std::size_t kLongest = 7;
  if (extendName.empty() || extendName.size() > kLongest) return kOtherTypes;
  char letters[kLongest];
  std::transform(extendName.begin(), extendName.end(), letters, [](char each) {
    return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
  });
  // Asked for every group of a result, so the lists are turned round once.
  static const auto* const classes = new std::unordered_map<std::string_view, int>(classOfEach());
  const auto found = classes->find(std::string_view(letters, extendName.size()));
  return found == classes->end() ? kOtherTypes : found->second;
}

const char* duplicateImage(int fileType) {
  switch (fileType) {
    case 2:
      return "ic_itunes";
    case 3:
      return "ic_video";
    case 4:
      return "ic_archive";
    case 5:
      return "ic_picture";
    default:
      return "ic_file";
  }
}

}  // namespace brisko
