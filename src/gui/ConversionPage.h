#pragma once

#include "gui/TabPage.h"

namespace quav {

class ConversionTab;

/// What the views of the decode and the encode tab share.
class ConversionPage : public TabPage {
    Q_OBJECT

protected:
    explicit ConversionPage(ConversionTab& tab, QWidget* parent = nullptr);

    QString destinationText() const override;

    /// Behind the action's words while it asks for a folder first.
    QString ellipsis() const;

private:
    ConversionTab& tab_;
};

} // namespace quav
