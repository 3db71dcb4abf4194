#include "gui/EncodePage.h"

#include "codecs/EncodeTab.h"
#include "platform/Settings.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSlider>
#include <QVBoxLayout>

namespace quav {

EncodePage::EncodePage(EncodeTab& tab, QWidget* parent) : ConversionPage(tab, parent), tab_(tab) {
    addTargetGroup();
    addFlacGroup();
    addOutputGroup();
    refresh();
}

void EncodePage::addTargetGroup() {
    QVBoxLayout* target = addOptionGroup(tr("Target"));
    addRadioButton(target, tr("F&LAC"), tr("Encode to FLAC files"))->setChecked(true);
}

void EncodePage::addLevel(QVBoxLayout* group) {
    const SettingDefinition* levels = Settings::definition(QString(keys::encodeFlacLevel));
    auto* label = new QLabel(tr("Le&vel"), this);
    level_ = new QSlider(Qt::Horizontal, this);
    level_->setRange(levels->least, levels->greatest);
    level_->setPageStep(1);
    level_->setTickInterval(1);
    level_->setTickPosition(QSlider::TicksBelow);
    level_->setAccessibleName(tr("Compression level"));
    level_->setToolTip(tr("0 is fast, 8 is small; the sound is the same (flac -0 to -8)"));
    label->setBuddy(level_);
    levelNumber_ = new QLabel(this);
    levelNumber_->setMinimumWidth(fontMetrics().horizontalAdvance(u'0') * 2);
    levelNumber_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(level_, 1);
    row->addWidget(levelNumber_);
    group->addLayout(row);
    connect(level_, &QSlider::valueChanged, &tab_, &EncodeTab::setFlacLevel);
}

void EncodePage::addFlacGroup() {
    QVBoxLayout* flac = addOptionGroup(tr("FLAC"));
    addLevel(flac);
    verify_ = addCheckBox(flac, tr("Verif&y"),
                          tr("Decode while encoding and compare with the source (flac -V)"));
    lax_ = addCheckBox(flac, tr("La&x"),
                       tr("Allow files outside the streamable subset, for unusual sample rates and "
                          "resolutions (flac --lax); the level is then left to flac"));
    keepForeignMetadata_ =
        addCheckBox(flac, tr("&Keep foreign metadata"),
                    tr("Store the chunks of the WAV or AIFF file that are no audio "
                       "(flac --keep-foreign-metadata)"));
    generateFFP_ =
        addCheckBox(flac, tr("Wr&ite fingerprint file"),
                    tr("Afterwards write a file with the fingerprints of all outputs into each "
                       "output folder (metaflac --show-md5)"));
    connect(generateFFP_, &QCheckBox::clicked, &tab_, &EncodeTab::setGenerateFFP);
    connect(verify_, &QCheckBox::clicked, &tab_, &EncodeTab::setFlacVerify);
    connect(lax_, &QCheckBox::clicked, &tab_, &EncodeTab::setFlacLax);
    connect(keepForeignMetadata_, &QCheckBox::clicked, &tab_,
            &EncodeTab::setFlacKeepForeignMetadata);
}

QString EncodePage::actionText(int files) const {
    if (files == 0) {
        return tr("&Encode");
    }
    return (files == 1 ? tr("&Encode 1 file") : tr("&Encode %L1 files").arg(files)) + ellipsis();
}

void EncodePage::showOptions() {
    ConversionPage::showOptions();
    level_->setValue(tab_.flacLevel());
    level_->setEnabled(!tab_.flacLax());
    levelNumber_->setNum(tab_.flacLevel());
    levelNumber_->setEnabled(!tab_.flacLax());
    verify_->setChecked(tab_.flacVerify());
    lax_->setChecked(tab_.flacLax());
    generateFFP_->setChecked(tab_.generateFFP());
    keepForeignMetadata_->setChecked(tab_.flacKeepForeignMetadata());
}

} // namespace quav
