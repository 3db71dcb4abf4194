#pragma once

#include "gui/TabPage.h"

class QCheckBox;
class QRadioButton;

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
    void showOptions() override;

private:
    void addCommandGroup();
    void addCreateGroup();
    void addReadingGroup();

    ChecksumTab& tab_;
    QRadioButton* test_ = nullptr;
    QRadioButton* create_ = nullptr;
    QRadioButton* verify_ = nullptr;
    QWidget* createGroup_ = nullptr;
    QRadioButton* md5_ = nullptr;
    QRadioButton* st5_ = nullptr;
    QRadioButton* ffp_ = nullptr;
    QCheckBox* beside_ = nullptr;
    QWidget* readingGroup_ = nullptr;
    QCheckBox* otherSpellings_ = nullptr;
};

} // namespace quav
