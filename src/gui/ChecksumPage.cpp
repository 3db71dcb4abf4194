#include "gui/ChecksumPage.h"

#include "checksums/ChecksumTab.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace quav {

ChecksumPage::ChecksumPage(ChecksumTab& tab, QWidget* parent) : TabPage(tab, parent), tab_(tab) {
    addCommandGroup();
    addCreateGroup();
    addReadingGroup();
    refresh();
}

void ChecksumPage::addCommandGroup() {
    QVBoxLayout* group = addOptionGroup(tr("Command"));
    const auto choose = [this](ChecksumTab::Command command) {
        return [this, command] { tab_.setCommandOptions(command); };
    };
    test_ = addRadioButton(group, tr("&Test files"),
                           tr("Decode each FLAC, APE, WV and TTA file without writing anything "
                              "(flac -t, mac -v, wvunpack -v, ttaenc -t)"));
    create_ = addRadioButton(group, tr("Create c&hecksum file"),
                             tr("Write one checksum file over all files in the list"));
    verify_ = addRadioButton(group, tr("&Verify checksum files"),
                             tr("Check the files that the MD5, ST5 and FFP files in the list "
                                "name; they are looked up beside their checksum file"));
    connect(test_, &QRadioButton::clicked, &tab_, choose(ChecksumTab::Command::Test));
    connect(create_, &QRadioButton::clicked, &tab_, choose(ChecksumTab::Command::Create));
    connect(verify_, &QRadioButton::clicked, &tab_, choose(ChecksumTab::Command::Verify));
}

void ChecksumPage::addCreateGroup() {
    QVBoxLayout* layout = addOptionGroup(tr("Checksum file"));
    createGroup_ = layout->parentWidget();
    const auto choose = [this](ChecksumKind kind) {
        return [this, kind] { tab_.setCreateChecksumOptions(kind); };
    };
    md5_ = addRadioButton(layout, tr("&MD5"), tr("A digest of each whole file, of any type"));
    st5_ = addRadioButton(layout, tr("&ST5"),
                          tr("A digest of the audio of each file, the same for every lossless "
                             "format (shntool hash -m)"));
    ffp_ = addRadioButton(layout, tr("FF&P"),
                          tr("The fingerprint that each FLAC file carries of its audio "
                             "(metaflac --show-md5)"));
    beside_ = addCheckBox(layout, tr("Save &beside the source files"),
                          tr("Save the checksum file in the folder of the files instead of asking "
                             "where; files from several folders are asked about all the same"));
    connect(md5_, &QRadioButton::clicked, &tab_, choose(ChecksumKind::Md5));
    connect(st5_, &QRadioButton::clicked, &tab_, choose(ChecksumKind::St5));
    connect(ffp_, &QRadioButton::clicked, &tab_, choose(ChecksumKind::Ffp));
    connect(beside_, &QCheckBox::clicked, &tab_, &ChecksumTab::setSourceSaveButton);
}

void ChecksumPage::addReadingGroup() {
    QVBoxLayout* layout = addOptionGroup(tr("Reading"));
    readingGroup_ = layout->parentWidget();
    otherSpellings_ =
        addCheckBox(layout, tr("Accept &other spellings"),
                    tr("Also read lists with two blanks, tabs, BSD style, upper-case digests, "
                       "backslashes or other encodings, lists under names such as md5sum.txt, "
                       "texts with several sections, and names in other capitals; the report says "
                       "what a strict reader would have found"));
    connect(otherSpellings_, &QCheckBox::clicked, &tab_, &ChecksumTab::setAcceptOtherSpellings);
}

QString ChecksumPage::actionText(int files) const {
    const auto counted = [files](const QString& none, const QString& one, const QString& many) {
        return files == 0 ? none : files == 1 ? one : many.arg(files);
    };
    switch (tab_.commandOptions()) {
    case ChecksumTab::Command::Test:
        return counted(tr("T&est"), tr("T&est 1 file"), tr("T&est %L1 files"));
    case ChecksumTab::Command::Create:
        return tr("Cr&eate") + (tab_.sourceSaveButton() ? QString() : tr(" …"));
    case ChecksumTab::Command::Verify:
        return counted(tr("V&erify"), tr("V&erify 1 file"), tr("V&erify %L1 files"));
    }
    return {};
}

QString ChecksumPage::destinationText() const {
    if (!tab_.createOptionsShown()) {
        return tr("Output: a report");
    }
    return tab_.sourceSaveButton() ? tr("Output: beside the sources")
                                   : tr("Output: asks for a path");
}

void ChecksumPage::showOptions() {
    using Command = ChecksumTab::Command;
    test_->setChecked(tab_.commandOptions() == Command::Test);
    create_->setChecked(tab_.commandOptions() == Command::Create);
    verify_->setChecked(tab_.commandOptions() == Command::Verify);
    md5_->setChecked(tab_.createChecksumOptions() == ChecksumKind::Md5);
    st5_->setChecked(tab_.createChecksumOptions() == ChecksumKind::St5);
    ffp_->setChecked(tab_.createChecksumOptions() == ChecksumKind::Ffp);
    beside_->setChecked(tab_.sourceSaveButton());
    otherSpellings_->setChecked(tab_.acceptOtherSpellings());
    createGroup_->setEnabled(tab_.createOptionsShown());
    createGroup_->setVisible(tab_.createOptionsShown());
    readingGroup_->setVisible(tab_.readingOptionsShown());
}

} // namespace quav
