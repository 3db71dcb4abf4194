#include "engine/BatchSummary.h"

#include "engine/QUAVTask.h"
#include "engine/QUAVTaskResults.h"

namespace quav {

namespace {

constexpr qsizetype mostNames = 3;

} // namespace

void BatchSummary::add(const QUAVTask& task) {
    if (task.cancelled()) {
        ++cancelled_;
    } else if (task.error()) {
        ++failed_;
        if (firstFailed_.size() < mostNames) {
            firstFailed_ << task.title().simplified();
        }
    } else {
        ++done_;
    }
    files_.add(task.results()->verdictsOf(task));
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
    add(files_.failed, tr("%Ln files are damaged.", nullptr, files_.failed));
    add(files_.missing, tr("%Ln files are missing.", nullptr, files_.missing));
    add(files_.unreadable, tr("%Ln files could not be read.", nullptr, files_.unreadable));
    return all;
}

QString BatchSummary::failures() const {
    QString names = firstFailed_.join(QStringLiteral(", "));
    if (failed_ > firstFailed_.size()) {
        names += QStringLiteral(", …");
    }
    return tr("%Ln tasks failed: %1", nullptr, failed_).arg(names);
}

QString BatchSummary::text() const {
    QStringList all = sentences();
    if (failed_ > 0) {
        all.prepend(tr("%Ln tasks failed.", nullptr, failed_));
    }
    return all.join(u' ');
}

QString BatchSummary::line() const {
    QStringList parts;
    if (failed_ > 0) {
        parts << failures();
    }
    if (const QString others = sentences().join(u' '); !others.isEmpty()) {
        parts << others;
    }
    return parts.join(QStringLiteral(" · "));
}

} // namespace quav
