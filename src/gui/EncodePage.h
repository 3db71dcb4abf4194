#pragma once

#include "gui/ConversionPage.h"

namespace quav {

class EncodeTab;

/// The view of the encode tab.
class EncodePage : public ConversionPage {
    Q_OBJECT

public:
    explicit EncodePage(EncodeTab& tab, QWidget* parent = nullptr);

protected:
    QString actionText(int files) const override;
};

} // namespace quav
