#include "gui/ConversionPage.h"

#include "codecs/ConversionTab.h"

#include <QCheckBox>
#include <QVBoxLayout>

namespace quav {

ConversionPage::ConversionPage(ConversionTab& tab, QWidget* parent)
    : TabPage(tab, parent), tab_(tab) {}

void ConversionPage::addOutputGroup() {
    QVBoxLayout* output = addOptionGroup(tr("Output"));
    beside_ = addCheckBox(output, tr("&Beside the source files"),
                          tr("Write each output into the folder of its source instead of asking "
                             "for one folder for all"));
    deleteOriginals_ = addCheckBox(output, tr("Delete the &source files after"),
                                   tr("Remove each source once its output is complete and nothing "
                                      "went wrong"));
    verifyAudio_ = addCheckBox(output, tr("C&ompare the sound after"),
                               tr("Read each source and its output once more and compare their "
                                  "sound. Before a source is deleted that is done anyhow."));
    connect(verifyAudio_, &QCheckBox::clicked, &tab_, &ConversionTab::setVerifyAudio);
    connect(beside_, &QCheckBox::clicked, &tab_, &ConversionTab::setBesideSources);
    connect(deleteOriginals_, &QCheckBox::clicked, &tab_, &ConversionTab::setDeleteOriginals);
}

QString ConversionPage::destinationText() const {
    return tab_.besideSources() ? tr("Output: beside the sources")
                                : tr("Output: asks for a folder");
}

QString ConversionPage::ellipsis() const {
    return tab_.besideSources() ? QString() : tr(" …");
}

void ConversionPage::showOptions() {
    beside_->setChecked(tab_.besideSources());
    verifyAudio_->setChecked(tab_.verifyAudio());
    deleteOriginals_->setChecked(tab_.deleteOriginals());
}

} // namespace quav
