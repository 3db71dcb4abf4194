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

    /// The action's words, marked while it asks for a folder first.
    QString asking(const QString& action) const;

private:
    ConversionTab& tab_;
};

} // namespace quav
