#include "gui/ConversionPage.h"

#include "codecs/ConversionTab.h"

namespace quav {

ConversionPage::ConversionPage(ConversionTab& tab, QWidget* parent)
    : TabPage(tab, parent), tab_(tab) {}

QString ConversionPage::destinationText() const {
    return tab_.options()[tab_.rows().beside] ? tr("Output: beside the sources")
                                              : tr("Output: asks for a folder");
}

QString ConversionPage::asking(const QString& action) const {
    return tab_.options()[tab_.rows().beside] ? action : tr("%1 …").arg(action);
}

} // namespace quav
