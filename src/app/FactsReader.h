#pragma once

#include "app/ListFacts.h"
#include "platform/BackgroundWork.h"
#include "platform/MainThread.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace quav {

/// Reads the facts of the files in a list in the background. What was read of a file once is kept
/// until the file changes or leaves the list. Nothing is read until `start`.
class FactsReader : public QObject {
    Q_OBJECT

public:
    explicit FactsReader(QObject* parent = nullptr);
    /// Stops reading.
    ~FactsReader() override;

    /// Somebody wants to know: from now on facts are read, also of what comes later.
    void start();

    /// The list holds these files now; `known` are the same ones. Each is looked at once more.
    void setFiles(const QStringList& files, const QSet<QString>& known);

    const ListFacts& facts() const { return facts_; }

    /// Sums over the files that have been looked at.
    qint64 bytes() const { return bytes_; }
    std::chrono::milliseconds length() const { return length_; }

Q_SIGNALS:
    /// More is known; at most some thirty times a second.
    void changed();
    /// All files of the list have been looked at.
    void finished();

private:
    /// A file to look at, and which one it was when its facts were read.
    struct Wanted {
        QString path;
        std::optional<FileIdentity> known;
    };
    using Batch = std::vector<std::pair<QString, FileFacts>>;

    void read();
    void readAll(const std::vector<Wanted>& wanted);
    void announce(Batch batch);
    void take(const Batch& batch);
    void end();
    void addUp(const FileFacts& facts, int sign);

    MainThread mainThread_;
    ListFacts facts_;
    QStringList files_;
    QSet<QString> listed_;
    qint64 bytes_ = 0;
    std::chrono::milliseconds length_{0};
    bool isStarted_ = false;
    bool isReading_ = false;
    bool isStale_ = false; ///< the list has changed since reading began
    std::atomic<bool> stop_ = false;
    BackgroundWork worker_; ///< last, so that it has ended before the others go
};

} // namespace quav
