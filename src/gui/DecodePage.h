#pragma once

#include "gui/ConversionPage.h"

class QCheckBox;
class QRadioButton;

namespace quav {

class DecodeTab;

/// The view of the decode tab.
class DecodePage : public ConversionPage {
    Q_OBJECT

public:
    explicit DecodePage(DecodeTab& tab, QWidget* parent = nullptr);

protected:
    QString actionText(int files) const override;
    void showOptions() override;

private:
    void addFormatGroup();
    void addFlacGroup();
    QRadioButton* addFormat(QVBoxLayout* group, const QString& text, const QString& word,
                            const QString& toolTip);

    DecodeTab& tab_;
    QRadioButton* wav_ = nullptr;
    QRadioButton* aiff_ = nullptr;
    QWidget* flacOptions_ = nullptr;
    QCheckBox* throughErrors_ = nullptr;
    QCheckBox* keepForeignMetadata_ = nullptr;
};

} // namespace quav
