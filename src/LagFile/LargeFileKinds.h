#pragma once

#include "DuplicateTypes.h"
#include "FileNode.h"

#include <QColor>
#include <QString>

#include <cstddef>

namespace brisko {

/// What files are told apart by in the map: 0 folders, 1 to 6 the types of files.
inline constexpr std::size_t kLargeFileKinds = kDuplicateSegments;

std::size_t largeFileKind(const FileNode& node);
QString largeFileKindTitle(std::size_t kind);
/// The fill of tiles of this kind in the present appearance.
QColor largeFileKindColor(std::size_t kind);
/// The icon in a list.
const char* largeFileImage(const FileNode& node);
/// The date in the user's short form; empty when it is not known.
QString modificationDateText(const FileNode& node);
/// The colour of a size's text: green from a megabyte, orange from a gigabyte, red from a terabyte,
/// below that the plain text's.
QColor sizeColor(std::uint64_t bytes);

}  // namespace brisko
