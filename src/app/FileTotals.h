#pragma once

#include "platform/BackgroundWork.h"
#include "platform/MainThread.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <filesystem>

namespace quav {

/// How much audio a list of files holds: bytes and playing time, read in the background. What was
/// read of a file once is remembered until the file changes.
class FileTotals : public QObject {
    Q_OBJECT

public:
    explicit FileTotals(QObject* parent = nullptr);
    /// Stops reading.
    ~FileTotals() override;

    /// Counts these files from now on. `changed` follows, now and then and at the end.
    void count(const QStringList& files);

    qint64 bytes() const { return bytes_; }
    std::chrono::milliseconds length() const { return length_; }

Q_SIGNALS:
    void changed();

private:
    struct Facts {
        qint64 bytes = 0;
        std::chrono::milliseconds length{0};
        std::filesystem::file_time_type modified;
    };

    void readAll(const QStringList& files, unsigned generation);
    Facts factsOf(const QString& file);
    void announce(const Facts& totals, unsigned generation);

    MainThread mainThread_;
    qint64 bytes_ = 0;
    std::chrono::milliseconds length_{0};
    unsigned generation_ = 0;
    std::atomic<bool> stop_ = false;
    QHash<QString, Facts> known_; ///< belongs to the worker while it runs
    BackgroundWork worker_;       ///< last, so that it has ended before the others go
};

} // namespace quav
