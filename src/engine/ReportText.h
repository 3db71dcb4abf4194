#pragma once

#include "platform/SpillFile.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace quav {

/// A text that grows and may become as long as a tool pleases: all of it is there to be read, but
/// what is long lies on the disk. Copies are cheap and stay as they are when the original grows.
/// Sizes are bytes of UTF-8.
class ReportText {
public:
    /// One that stays in memory.
    ReportText() = default;
    ReportText(const QString& text) { append(text); }

    /// One that goes to the file as it grows.
    explicit ReportText(std::shared_ptr<SpillFile> spillFile) : spillFile_(std::move(spillFile)) {}

    void append(const QString& text);
    void append(const ReportText& text);

    /// Nothing is likely to follow for now: keeps only a little in memory.
    void putAway();

    void clear();

    qint64 size() const { return size_; }

    /// The whole text, however long it is.
    QString text() const;

    /// Hands over the whole text in pieces of moderate size, none of which cuts a character.
    void read(const std::function<void(const QByteArray& piece)>& take) const;

    /// The beginning and the end, at most so many bytes and no half characters.
    QString beginning(qint64 most) const;
    QString ending(qint64 most) const;

private:
    /// A piece of the text, on the disk or, when that cannot be, in memory.
    struct Piece {
        std::shared_ptr<const SpillFile::Part> spilled;
        QByteArray kept;

        qint64 size() const { return spilled ? spilled->size() : kept.size(); }
        QByteArray read() const;
    };

    void appendBytes(QByteArrayView bytes);
    void spill();

    std::shared_ptr<SpillFile> spillFile_;
    std::vector<Piece> pieces_;
    QByteArray last_; ///< what comes behind the pieces
    qint64 size_ = 0;
};

} // namespace quav
