#include "gui/SummaryLine.h"

#include "engine/QUAVTaskQueue.h"

namespace quav {

namespace {

constexpr int sideMargin = 4;

} // namespace

SummaryLine::SummaryLine(QUAVTaskQueue& queue, QWidget* parent) : QLabel(parent), queue_(queue) {
    setTextFormat(Qt::PlainText);
    setContentsMargins(sideMargin, 0, sideMargin, 0);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(&queue_, &QUAVTaskQueue::countsChanged, this, &SummaryLine::refresh);
}

void SummaryLine::refresh() {
    const QString line = queue_.taskCount() == 0 ? queue_.summary().line() : QString();
    if (line == line_) {
        return;
    }
    line_ = line;
    QFont emphasised(font());
    emphasised.setBold(!line.isEmpty() && queue_.summary().hasFailures());
    setFont(emphasised);
    // Not even empty tags: they would be shown as an empty box.
    setToolTip(line.isEmpty() ? QString()
                              : QStringLiteral("<span>%1</span>").arg(line.toHtmlEscaped()));
    setAccessibleName(line);
    fit();
    if (!line.isEmpty()) {
        Q_EMIT told();
    }
}

void SummaryLine::fit() {
    setText(fontMetrics().elidedText(line_, Qt::ElideRight, contentsRect().width()));
}

QSize SummaryLine::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

void SummaryLine::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    fit();
}

} // namespace quav
