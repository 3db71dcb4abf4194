#include "gui/ConversionPage.h"

#include "codecs/ConversionTab.h"

namespace quav {

ConversionPage::ConversionPage(ConversionTab& tab, Action action, QWidget* parent)
    : TabPage(tab, parent), tab_(tab), action_(action) {
    refresh();
}

QString ConversionPage::decoding(int files) {
    return files == 0 ? tr("&Decode") : tr("&Decode %Ln files", nullptr, files);
}

QString ConversionPage::encoding(int files) {
    return files == 0 ? tr("&Encode") : tr("&Encode %Ln files", nullptr, files);
}

QString ConversionPage::destinationText() const {
    return tab_.options()[tab_.rows().beside] ? tr("Output: beside the sources")
                                              : tr("Output: asks for a folder");
}

QString ConversionPage::actionText(int files) const {
    const QString action = action_(files);
    return tab_.options()[tab_.rows().beside] ? action : tr("%1 …").arg(action);
}

} // namespace quav
