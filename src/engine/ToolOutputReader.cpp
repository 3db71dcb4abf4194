#include "engine/ToolOutputReader.h"

#include <QUtf8StringView>

#include <utility>

namespace quav {

namespace {

constexpr qsizetype longest = 65536; // bytes of a piece, characters of a line
constexpr qsizetype longestCharacter = 4;

bool isInsideCharacter(char byte) {
    constexpr unsigned mask = 0xC0;
    constexpr unsigned mark = 0x80;
    return (static_cast<unsigned char>(byte) & mask) == mark;
}

} // namespace

QStringList ToolOutputReader::feed(const QByteArray& bytes) {
    QStringList pieces;
    for (const char byte : bytes) {
        take(byte, pieces);
    }
    return pieces;
}

void ToolOutputReader::take(char byte, QStringList& pieces) {
    if (std::exchange(carriageReturn_, false)) {
        if (byte != '\n') {
            handOut(pieces);
        }
        piece_ += '\r';
    }
    if (piece_.size() >= longest &&
        (!isInsideCharacter(byte) || piece_.size() >= longest + longestCharacter)) {
        handOut(pieces);
    }
    switch (byte) {
    case '\r':
        carriageReturn_ = true;
        return;
    case '\b':
        if (!piece_.isEmpty() && piece_.back() != '\b') {
            handOut(pieces);
        }
        break;
    default:
        break;
    }
    piece_ += byte;
    if (byte == '\n') {
        handOut(pieces);
    }
}

void ToolOutputReader::handOut(QStringList& pieces) {
    if (!piece_.isEmpty() && QUtf8StringView(piece_).isValidUtf8()) {
        pieces << QString::fromUtf8(piece_);
    }
    piece_.clear();
}

QStringList ToolOutputReader::finish() {
    QStringList pieces;
    carriageReturn_ = false;
    handOut(pieces);
    return pieces;
}

QString TerminalText::feed(const QString& piece) {
    QString completed;
    for (qsizetype i = 0; i < piece.size(); ++i) {
        const QChar character = piece[i];
        if (character == u'\b') {
            line_.chop(1);
        } else if (character == u'\r') {
            const bool endsLine = i + 1 < piece.size() && piece[i + 1] == u'\n';
            if (!endsLine) {
                line_.clear();
            }
        } else if (character == u'\n') {
            completed += finish() + u'\n';
        } else {
            if (line_.size() >= longest && !character.isLowSurrogate()) {
                completed += std::exchange(line_, {});
            }
            line_ += character;
        }
    }
    return completed;
}

QString TerminalText::finish() {
    while (line_.endsWith(u' ')) {
        line_.chop(1);
    }
    return std::exchange(line_, {});
}

} // namespace quav
