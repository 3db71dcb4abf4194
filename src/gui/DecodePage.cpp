#include "gui/DecodePage.h"

#include "codecs/DecodeTab.h"

namespace quav {

DecodePage::DecodePage(DecodeTab& tab, QWidget* parent) : ConversionPage(tab, parent) {
    refresh();
}

QString DecodePage::actionText(int files) const {
    return asking(files == 0 ? tr("&Decode") : tr("&Decode %Ln files", nullptr, files));
}

} // namespace quav
