#pragma once

#include <QString>
#include <QStringList>

namespace quav {

/// Lines for the user of which only the first are kept, so that whoever complains without end does
/// not fill the memory.
class BoundedLines {
public:
    explicit BoundedLines(qsizetype most) : most_(most) {}

    /// A line that is longer than any that is meant to be read is cut.
    void add(const QString& line);

    /// Those that were kept, and when there were more, a last one that says how many.
    QStringList lines() const;

    void clear();

private:
    qsizetype most_;
    QStringList first_;
    int more_ = 0;
};

} // namespace quav
