#pragma once

#include "gui/TabPage.h"

namespace quav {

class ChecksumTab;

/// The view of the checksum tab.
class ChecksumPage : public TabPage {
    Q_OBJECT

public:
    explicit ChecksumPage(ChecksumTab& tab, QWidget* parent = nullptr);

protected:
    QString actionText(int files) const override;
    QString destinationText() const override;

private:
    ChecksumTab& tab_;
};

} // namespace quav
