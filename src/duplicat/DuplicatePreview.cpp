#include "DuplicatePreview.h"

#include "CommUti.h"
#include "DuplicateTreeModel.h"
#include "LocalizedString.h"

namespace brisko {

DuplicatePreview::DuplicatePreview(QWidget* parent) : FilePreview(parent) {
  show(nullptr);
}

void DuplicatePreview::show(const SimpleTreeNode* node) {
  const SimpleTreeNode* copy = node;
  if (node != nullptr && !node->nodeData.isLeaf) {
    copy = node->children.empty() ? nullptr : node->children.front();
  }
  if (copy == nullptr) {
    showNothing("ic_duplicate", getLocalizedString("Nothing selected"),
                getLocalizedString("Select a copy to see what is in it."));
    return;
  }
  const SimpleNodeData& shown = copy->nodeData;
  Item item;
  item.path = shown.name();
  item.imageName = copy->iconRep();
  item.facts = QString::fromStdString(CommUti::longlongDiskSize(shown.fileSize));
  if (!shown.isBundle) item.facts += QLatin1Char('\n') + modificationDateText(shown);
  item.hasContent = !shown.isBundle;
  item.device = shown.device;
  item.inode = shown.inode;
  showItem(item);
}

}  // namespace brisko
