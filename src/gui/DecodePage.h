#pragma once

#include "gui/ConversionPage.h"

namespace quav {

class DecodeTab;

/// The view of the decode tab.
class DecodePage : public ConversionPage {
    Q_OBJECT

public:
    explicit DecodePage(DecodeTab& tab, QWidget* parent = nullptr);

protected:
    QString actionText(int files) const override;
};

} // namespace quav
