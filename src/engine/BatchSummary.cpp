#include "engine/BatchSummary.h"

#include "platform/ListText.h"

namespace quav {

namespace {

constexpr qsizetype mostNames = 3;

} // namespace

void BatchSummary::add(const TaskReport& report) {
    switch (report.outcome) {
    case TaskReport::Outcome::Done:
        ++done_;
        break;
    case TaskReport::Outcome::Failed:
        ++failed_;
        if (firstFailed_.size() < mostNames) {
            firstFailed_ << report.name.simplified();
        }
        break;
    case TaskReport::Outcome::Cancelled:
        ++cancelled_;
        break;
    }
    warnings_ += static_cast<int>(report.warnings.size());
    proven_ += report.proof.isSameSound ? 1 : 0;
    files_.add(report.files);
}

QStringList BatchSummary::sentences() const {
    QStringList all;
    const auto add = [&all](int count, const QString& sentence) {
        if (count > 0) {
            all << sentence;
        }
    };
    add(done_, tr("%Ln tasks are done.", nullptr, done_));
    add(cancelled_, tr("%Ln tasks were canceled.", nullptr, cancelled_));
    add(proven_, tr("%Ln outputs have the sound of their originals.", nullptr, proven_));
    add(files_.failed, tr("%Ln files are damaged.", nullptr, files_.failed));
    add(files_.missing, tr("%Ln files are missing.", nullptr, files_.missing));
    add(files_.unreadable, tr("%Ln files could not be read.", nullptr, files_.unreadable));
    return all;
}

QString BatchSummary::failures() const {
    QStringList names = firstFailed_;
    if (failed_ > names.size()) {
        names << QStringLiteral("…");
    }
    return tr("%Ln tasks failed: %1", nullptr, failed_).arg(listed(names));
}

QString BatchSummary::text() const {
    QStringList all = sentences();
    if (failed_ > 0) {
        all.prepend(tr("%Ln tasks failed.", nullptr, failed_));
    }
    return all.join(u' ');
}

QString BatchSummary::line() const {
    QString others = sentences().join(u' ');
    if (failed_ == 0) {
        return others;
    }
    return others.isEmpty() ? failures()
                            : tr("%1 · %2", "what failed, and the rest").arg(failures(), others);
}

} // namespace quav
