#pragma once

#include "gui/TabPage.h"

namespace quav {

class ConversionTab;

/// The view of the decode or the encode tab.
class ConversionPage : public TabPage {
    Q_OBJECT

public:
    /// What the button says for so many files.
    using Action = QString (*)(int files);
    static QString decoding(int files);
    static QString encoding(int files);

    ConversionPage(ConversionTab& tab, Action action, QWidget* parent = nullptr);

protected:
    /// Marked while the action asks for a folder first.
    QString actionText(int files) const override;
    QString destinationText() const override;

private:
    ConversionTab& tab_;
    Action action_;
};

} // namespace quav
