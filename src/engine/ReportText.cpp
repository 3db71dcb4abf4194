#include "engine/ReportText.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace quav {

namespace {

constexpr qsizetype pieceBytes = 65536;
constexpr qsizetype worthSpilling = 1024; ///< of a text that has come to its end

bool continuesACharacter(char byte) {
    constexpr unsigned mask = 0xC0;
    constexpr unsigned mark = 0x80;
    return (static_cast<unsigned char>(byte) & mask) == mark;
}

/// How many of the bytes are whole characters, if there is room for so many bytes.
qsizetype wholeCharacters(QByteArrayView bytes, qsizetype most) {
    qsizetype end = std::min(bytes.size(), most);
    while (end > 0 && end < bytes.size() && continuesACharacter(bytes[end])) {
        --end;
    }
    return end;
}

} // namespace

QByteArray ReportText::Piece::read() const {
    if (!spilled) {
        return kept;
    }
    QByteArray bytes = spilled->read();
    if (bytes.size() < spilled->size()) {
        bytes +=
            QCoreApplication::translate(
                "ReportText", "\n[A part of this text could not be read back from the disk.]\n")
                .toUtf8();
    }
    return bytes;
}

void ReportText::append(const QString& text) {
    appendBytes(text.toUtf8());
}

void ReportText::append(const ReportText& text) {
    if (text.size_ <= pieceBytes) {
        text.read([this](const QByteArray& piece) { appendBytes(piece); });
        return;
    }
    spill();
    pieces_.insert(pieces_.end(), text.pieces_.begin(), text.pieces_.end());
    size_ += text.size_ - text.last_.size();
    appendBytes(text.last_);
}

void ReportText::appendBytes(QByteArrayView bytes) {
    size_ += bytes.size();
    while (last_.size() + bytes.size() > pieceBytes) {
        const qsizetype some = wholeCharacters(bytes, pieceBytes - last_.size());
        last_ += bytes.first(some);
        bytes = bytes.sliced(some);
        spill();
    }
    last_ += bytes;
}

void ReportText::spill() {
    if (!last_.isEmpty()) {
        // What the disk does not take stays in memory: a report is complete before it is small.
        auto spilled = spillFile_ ? spillFile_->write(last_) : nullptr;
        pieces_.push_back({spilled, spilled ? QByteArray() : last_});
        last_ = QByteArray();
    }
}

void ReportText::putAway() {
    if (spillFile_ && last_.size() > worthSpilling) {
        spill();
    }
    pieces_.shrink_to_fit();
    last_.squeeze();
}

void ReportText::clear() {
    *this = ReportText(std::move(spillFile_));
}

QString ReportText::text() const {
    QByteArray all;
    all.reserve(size_);
    read([&all](const QByteArray& piece) { all += piece; });
    return QString::fromUtf8(all);
}

void ReportText::read(const std::function<void(const QByteArray&)>& take) const {
    for (const Piece& piece : pieces_) {
        take(piece.read());
    }
    if (!last_.isEmpty()) {
        take(last_);
    }
}

QString ReportText::beginning(qint64 most) const {
    QByteArray bytes;
    for (auto piece = pieces_.begin(); piece != pieces_.end() && bytes.size() <= most; ++piece) {
        bytes += piece->read();
    }
    if (bytes.size() <= most) {
        bytes += last_;
    }
    return QString::fromUtf8(bytes.first(wholeCharacters(bytes, most)));
}

QString ReportText::ending(qint64 most) const {
    QByteArray bytes = last_;
    for (auto piece = pieces_.rbegin(); piece != pieces_.rend() && bytes.size() < most; ++piece) {
        bytes.prepend(piece->read());
    }
    qsizetype start = std::max<qint64>(0, bytes.size() - most);
    while (start > 0 && start < bytes.size() && continuesACharacter(bytes[start])) {
        ++start;
    }
    return QString::fromUtf8(bytes.sliced(start));
}

} // namespace quav
