#include "gui/ChecksumPage.h"

#include "checksums/ChecksumOptions.h"
#include "checksums/ChecksumTab.h"

namespace quav {

ChecksumPage::ChecksumPage(ChecksumTab& tab, QWidget* parent) : TabPage(tab, parent), tab_(tab) {
    connect(&tab, &ChecksumTab::fingerprintsWritten, this, [this](const TaskReport& report) {
        Q_EMIT told(report.outcome == TaskReport::Outcome::Failed
                        ? tr("Failed: %1").arg(report.name)
                        : tr("Saved %1").arg(report.output));
        QStringList said = report.said.text().split(u'\n', Qt::SkipEmptyParts) + report.warnings;
        said.removeDuplicates();
        if (!said.isEmpty()) {
            Q_EMIT warned(said.join(u'\n') + u'\n');
        }
    });
    refresh();
}

QString ChecksumPage::actionText(int files) const {
    switch (tab_.options()[checksumOptions().command]) {
    case ChecksumCommand::Test:
        return files == 0 ? tr("T&est") : tr("T&est %Ln files", nullptr, files);
    case ChecksumCommand::Create:
        return tab_.options()[checksumOptions().sourceSave] ? tr("Cr&eate") : tr("Cr&eate …");
    case ChecksumCommand::Verify:
        return files == 0 ? tr("V&erify") : tr("V&erify %Ln files", nullptr, files);
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
