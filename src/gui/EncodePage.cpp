#include "gui/EncodePage.h"

#include "codecs/EncodeTab.h"

namespace quav {

EncodePage::EncodePage(EncodeTab& tab, QWidget* parent) : ConversionPage(tab, parent) {
    refresh();
}

QString EncodePage::actionText(int files) const {
    return asking(files == 0 ? tr("&Encode") : tr("&Encode %Ln files", nullptr, files));
}

} // namespace quav
