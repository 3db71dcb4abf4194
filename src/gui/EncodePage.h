#pragma once

#include "gui/ConversionPage.h"

class QCheckBox;
class QLabel;
class QSlider;

namespace quav {

class EncodeTab;

/// The view of the encode tab.
class EncodePage : public ConversionPage {
    Q_OBJECT

public:
    explicit EncodePage(EncodeTab& tab, QWidget* parent = nullptr);

protected:
    QString actionText(int files) const override;
    void showOptions() override;

private:
    void addTargetGroup();
    void addFlacGroup();
    void addLevel(QVBoxLayout* group);

    EncodeTab& tab_;
    QSlider* level_ = nullptr;
    QLabel* levelNumber_ = nullptr;
    QCheckBox* verify_ = nullptr;
    QCheckBox* lax_ = nullptr;
    QCheckBox* keepForeignMetadata_ = nullptr;
    QCheckBox* generateFFP_ = nullptr;
};

} // namespace quav
