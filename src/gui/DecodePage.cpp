#include "gui/DecodePage.h"

#include "codecs/DecodeTab.h"

namespace quav {

DecodePage::DecodePage(DecodeTab& tab, QWidget* parent) : ConversionPage(tab, parent) {
    refresh();
}

QString DecodePage::actionText(int files) const {
    if (files == 0) {
        return tr("&Decode");
    }
    return (files == 1 ? tr("&Decode 1 file") : tr("&Decode %L1 files").arg(files)) + ellipsis();
}

} // namespace quav
