#pragma once

#include <QLabel>

namespace quav {

class QUAVTaskQueue;

/// Tells in one line how the last batch ended: how many tasks were done and cancelled, and which
/// failed. Empty while there is work.
class SummaryLine : public QLabel {
    Q_OBJECT

public:
    explicit SummaryLine(QUAVTaskQueue& queue, QWidget* parent = nullptr);

    /// The whole line, of which there may not be room for all.
    const QString& line() const { return line_; }

    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// A batch has ended.
    void told();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void fit();

    QUAVTaskQueue& queue_;
    QString line_;
};

} // namespace quav
