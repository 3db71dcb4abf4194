#include "gui/ChecksumPage.h"

#include "checksums/ChecksumOptions.h"
#include "checksums/ChecksumTab.h"

namespace quav {

ChecksumPage::ChecksumPage(ChecksumTab& tab, QWidget* parent) : TabPage(tab, parent), tab_(tab) {
    refresh();
}

QString ChecksumPage::actionText(int files) const {
    const auto counted = [files](const QString& none, const QString& one, const QString& many) {
        return files == 0 ? none : files == 1 ? one : many.arg(files);
    };
    switch (tab_.options()[checksumOptions().command]) {
    case ChecksumCommand::Test:
        return counted(tr("T&est"), tr("T&est 1 file"), tr("T&est %L1 files"));
    case ChecksumCommand::Create:
        return tr("Cr&eate") +
               (tab_.options()[checksumOptions().sourceSave] ? QString() : tr(" …"));
    case ChecksumCommand::Verify:
        return counted(tr("V&erify"), tr("V&erify 1 file"), tr("V&erify %L1 files"));
    }
    return {};
}

QString ChecksumPage::destinationText() const {
    if (tab_.options()[checksumOptions().command] != ChecksumCommand::Create) {
        return tr("Output: a report");
    }
    return tab_.options()[checksumOptions().sourceSave] ? tr("Output: beside the sources")
                                                        : tr("Output: asks for a path");
}

} // namespace quav
