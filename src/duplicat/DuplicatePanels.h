#pragma once

#include "DuplicateModel.h"

#include <QString>

#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace brisko {

// What the duplicate page asks and tells in windows of their own. Each is modal to `parent` and
// returns when it has been answered.

/// The chooser for the folder to search; nothing when it was cancelled.
std::optional<std::string> chooseSearchFolder(QWidget* parent);

/// The question before the last copy of a group is ticked.
bool askDeleteAll(QWidget* parent);

/// Copies that stayed, with the reasons.
void tellFailures(QWidget* parent, const QString& title,
                  const std::vector<DuplicateFailure>& failures);

/// Folders that were left out, with the reasons.
void tellSkipped(QWidget* parent, const std::vector<SkippedFolder>& skipped);

/// "2 folders in it could not be read."
QString skippedText(std::size_t count);

}  // namespace brisko
