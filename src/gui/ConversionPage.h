#pragma once

#include "gui/TabPage.h"

class QCheckBox;

namespace quav {

class ConversionTab;

/// What the pages of the tabs that convert files share: where the output goes, and what becomes of
/// the sources.
class ConversionPage : public TabPage {
    Q_OBJECT

protected:
    explicit ConversionPage(ConversionTab& tab, QWidget* parent = nullptr);

    void addOutputGroup();

    QString destinationText() const override;
    void showOptions() override;

    /// "…" after the text of a button that is going to ask something first.
    QString ellipsis() const;

private:
    ConversionTab& tab_;
    QCheckBox* beside_ = nullptr;
    QCheckBox* deleteOriginals_ = nullptr;
    QCheckBox* verifyAudio_ = nullptr;
};

} // namespace quav
