#include "gui/DecodePage.h"

#include "codecs/DecodeTab.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace quav {

DecodePage::DecodePage(DecodeTab& tab, QWidget* parent) : ConversionPage(tab, parent), tab_(tab) {
    addFormatGroup();
    addOutputGroup();
    // Last, so that nothing moves and no gap gapes when it comes and goes.
    addFlacGroup();
    refresh();
}

QRadioButton* DecodePage::addFormat(QVBoxLayout* group, const QString& text, const QString& word,
                                    const QString& toolTip) {
    QRadioButton* button = addRadioButton(group, text, toolTip);
    connect(button, &QRadioButton::clicked, &tab_, [this, word] { tab_.setOutputFormat(word); });
    return button;
}

void DecodePage::addFormatGroup() {
    QVBoxLayout* format = addOptionGroup(tr("Target"));
    wav_ = addFormat(format, tr("WA&V"), QStringLiteral("WAV"), tr("Decode to WAV files"));
    aiff_ = addFormat(format, tr("A&IFF"), QStringLiteral("AIFF"),
                      tr("Decode to AIFF files (flac --force-aiff-format)"));
}

void DecodePage::addFlacGroup() {
    QVBoxLayout* flac = addOptionGroup(tr("FLAC"));
    flacOptions_ = flac->parentWidget();
    QSizePolicy policy = flacOptions_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    flacOptions_->setSizePolicy(policy);
    throughErrors_ = addCheckBox(flac, tr("Decode &through errors"),
                                 tr("Go on after damaged places instead of giving up (flac -F)"));
    keepForeignMetadata_ = addCheckBox(
        flac, tr("&Keep foreign metadata"),
        tr("Restore the chunks of the original WAV or AIFF file that are no audio, if the FLAC "
           "file kept them (flac --keep-foreign-metadata)"));
    connect(throughErrors_, &QCheckBox::clicked, &tab_, &DecodeTab::setDecodeFlacThroughErrors);
    connect(keepForeignMetadata_, &QCheckBox::clicked, &tab_, &DecodeTab::setKeepForeignMetadata);
}

QString DecodePage::actionText(int files) const {
    if (files == 0) {
        return tr("&Decode");
    }
    return (files == 1 ? tr("&Decode 1 file") : tr("&Decode %L1 files").arg(files)) + ellipsis();
}

void DecodePage::showOptions() {
    ConversionPage::showOptions();
    wav_->setChecked(tab_.outputFormat() != u"AIFF");
    aiff_->setChecked(tab_.outputFormat() == u"AIFF");
    flacOptions_->setVisible(tab_.flacOptionsVisible());
    throughErrors_->setChecked(tab_.decodeFlacThroughErrors());
    keepForeignMetadata_->setChecked(tab_.keepForeignMetadata());
}

} // namespace quav
