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
        const int more = static_cast<int>(more_);
        all << QCoreApplication::translate("BoundedLines", "and %Ln more that are not shown",
                                           nullptr, more);
    }
    return all;
}

void BoundedLines::clear() {
    first_.clear();
    more_ = 0;
}

} // namespace quav
