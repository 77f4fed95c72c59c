#include "ItemChooser.h"

#include "MessagePanel.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileSystemModel>
#include <QPushButton>

namespace brisko {

ItemChooser::ItemChooser(const Wanted& wanted, QWidget* parent)
    : QFileDialog(parent, wanted.title, QFile::decodeName(wanted.folder.c_str())) {
  setOption(QFileDialog::DontUseNativeDialog);
  setWindowFlag(Qt::WindowStaysOnTopHint);
  setFileMode(wanted.isOneOnly ? QFileDialog::ExistingFile : QFileDialog::ExistingFiles);
  setFilter(QDir::AllEntries | QDir::NoDotAndDotDot);
  auto* box = findChild<QDialogButtonBox*>();
  if (box == nullptr) return;
  // The toolkit's own button opens a folder instead of taking it.
  if (QPushButton* own = box->button(QDialogButtonBox::Open)) own->hide();
  QPushButton* add = box->addButton(wanted.buttonText, QDialogButtonBox::ActionRole);
  add->setObjectName(QStringLiteral("addButton"));
  setButtonKind(add, "primary");
  connect(add, &QPushButton::clicked, this, [this] {
    chosen_ = selection();
    if (!chosen_.isEmpty()) done(QDialog::Accepted);
  });
}

QStringList ItemChooser::selection() const {
  for (const char* name : {"listView", "treeView"}) {
    const auto* view = findChild<QAbstractItemView*>(QLatin1String(name));
    if (view == nullptr || !view->isVisible()) continue;
    QStringList paths;
    for (const QModelIndex& index : view->selectionModel()->selectedIndexes()) {
      if (index.column() == 0) paths << index.data(QFileSystemModel::FilePathRole).toString();
    }
    return paths;
  }
  return selectedFiles();
}

std::vector<std::string> ItemChooser::choose() {
  std::vector<std::string> paths;
  // A file that is opened by a double click or by its typed name.
  connect(this, &QFileDialog::filesSelected, this, [this](const QStringList& files) {
    if (chosen_.isEmpty()) chosen_ = files;
  });
  chosen_.clear();
  if (exec() != QDialog::Accepted) return paths;
  for (const QString& path : chosen_)
    paths.push_back(QFile::encodeName(path).toStdString());
  return paths;
}

}  // namespace brisko
