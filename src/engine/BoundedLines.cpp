#include "engine/BoundedLines.h"

#include <QCoreApplication>

namespace quav {

namespace {

constexpr qsizetype mostCharacters = 5000; // more than the longest path has

} // namespace

void BoundedLines::add(const QString& line) {
    if (first_.size() >= most_) {
        ++more_;
    } else {
        first_ << (line.size() > mostCharacters ? line.first(mostCharacters) + u'…' : line);
    }
}

QStringList BoundedLines::lines() const {
    QStringList all = first_;
    if (more_ > 0) {
        all << (more_ == 1
                    ? QCoreApplication::translate("BoundedLines", "and one more that is not shown")
                    : QCoreApplication::translate("BoundedLines", "and %L1 more that are not shown")
                          .arg(more_));
    }
    return all;
}

void BoundedLines::clear() {
    first_.clear();
    more_ = 0;
}

} // namespace quav
