#include "gui/EncodePage.h"

#include "codecs/EncodeTab.h"

namespace quav {

EncodePage::EncodePage(EncodeTab& tab, QWidget* parent) : ConversionPage(tab, parent) {
    refresh();
}

QString EncodePage::actionText(int files) const {
    if (files == 0) {
        return tr("&Encode");
    }
    return (files == 1 ? tr("&Encode 1 file") : tr("&Encode %L1 files").arg(files)) + ellipsis();
}

} // namespace quav
