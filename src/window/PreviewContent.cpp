#include "PreviewContent.h"

#include "FileDescriptor.h"
#include "LocalizedString.h"
#include "Utf8.h"

#include <QFile>
#include <QImageReader>
#include <QStringList>

#include <algorithm>
#include <array>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>

namespace brisko {
namespace {

constexpr std::size_t kTextBytes = 8 * 1024;
constexpr off_t kLargestPictureFile = 64 * 1024 * 1024;
constexpr qint64 kMostPixels = 100'000'000;
constexpr int kDecodedMegabytes = 256;

// Plain pixel formats. Formats that are documents, with references to other things in them, stay
// texts.
bool isPictureFormat(const QByteArray& format) {
  constexpr std::array<const char*, 8> kFormats = {"png", "jpeg", "jpg",  "gif",
                                                   "bmp", "ico",  "webp", "tiff"};
  return std::any_of(kFormats.begin(), kFormats.end(),
                     [&](const char* known) { return format == known; });
}

QImage decoded(int descriptor, QSize room) {
  QFile file;
  if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle)) return {};
  QImageReader reader(&file);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  QImageReader::setAllocationLimit(kDecodedMegabytes);
  if (!isPictureFormat(reader.format())) return {};
  const QSize size = reader.size();
  if (!size.isValid() || static_cast<qint64>(size.width()) * size.height() > kMostPixels) return {};
  if (size.width() > room.width() || size.height() > room.height()) {
    reader.setScaledSize(size.scaled(room, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
  }
  return reader.read();
}

}  // namespace

QString previewText(std::string_view bytes) {
  if (bytes.find('\0') != std::string_view::npos) return {};
  std::size_t end = 0;
  while (end < bytes.size()) {
    const std::size_t length = utf8SequenceLength(bytes.substr(end));
    if (length == 0) break;
    end += length;
  }
  // Only at the very end may something be incomplete, where the reading stopped.
  if (bytes.size() - end > 3) return {};
  const std::string_view text = bytes.substr(0, end);
  QStringList lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t next = std::min(text.find('\n', at), text.size());
    std::string line(text.substr(at, next - at));
    if (line.ends_with('\r')) line.pop_back();
    QString shown;
    for (std::size_t from = 0; from <= line.size();) {
      const std::size_t tab = std::min(line.find('\t', from), line.size());
      if (from > 0) shown += QStringLiteral("    ");
      shown += displayText(std::string_view(line).substr(from, tab - from));
      from = tab + 1;
    }
    lines << shown;
    at = next + 1;
  }
  return lines.join(QLatin1Char('\n'));
}

PreviewContent previewContent(const std::string& path, std::uint64_t device, std::uint64_t inode,
                              QSize room) {
  const FileDescriptor file(
      ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status;
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  if (status.st_dev != device || status.st_ino != inode) return {};
  PreviewContent content;
  if (status.st_size <= kLargestPictureFile) content.picture = decoded(file.get(), room);
  if (!content.picture.isNull()) return content;
  std::array<char, kTextBytes> bytes;
  const ssize_t got = ::pread(file.get(), bytes.data(), bytes.size(), 0);
  if (got > 0) content.text = previewText({bytes.data(), static_cast<std::size_t>(got)});
  return content;
}

}  // namespace brisko
