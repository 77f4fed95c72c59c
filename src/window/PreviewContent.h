#pragma once

#include "FileIdentity.h"

#include <QImage>
#include <QSize>
#include <QString>

#include <string>

namespace brisko {

/// What can be shown of a file: a picture, or the beginning of a text, or neither.
struct PreviewContent {
  QImage picture;
  QString text;

  bool isEmpty() const { return picture.isNull() && text.isEmpty(); }
};

/// Looks into the regular file at `path`; empty when it is none, no longer the item of `device` and
/// `inode`, or nothing that can be shown. A link is not followed and a FIFO or device never waited
/// for. Pictures come no larger than `room`, in pixels. Blocks while it reads and decodes: not for
/// the main thread.
PreviewContent previewContent(const std::string& path, std::uint64_t device, std::uint64_t inode,
                              QSize room);

/// The text to show for the first bytes of a file, with control characters escaped; empty when they
/// are no UTF-8 text. A character cut off at the end is left out.
QString previewText(std::string_view bytes);

}  // namespace brisko
