#pragma once

#include <QByteArray>
#include <QtEndian>

namespace quav::test {

inline QByteArray little(qsizetype number) {
    QByteArray bytes(4, '\0');
    qToLittleEndian(static_cast<quint32>(number), bytes.data());
    return bytes;
}

inline QByteArray big(qsizetype number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(static_cast<quint32>(number), bytes.data());
    return bytes;
}

/// A number in an ID3v2.4 tag: seven bits a byte.
inline QByteArray synchsafe(qsizetype number) {
    QByteArray bytes(4, '\0');
    for (int i = 3; i >= 0; --i, number >>= 7) {
        bytes[i] = static_cast<char>(number & 0x7f);
    }
    return bytes;
}

inline QByteArray frame(const QByteArray& id, const QByteArray& content) {
    return id + synchsafe(content.size()) + QByteArray(2, '\0') + content;
}

inline QByteArray tag(const QByteArray& frames, char version = 4) {
    return QByteArray("ID3") + version + QByteArray(2, '\0') + synchsafe(frames.size()) + frames;
}

} // namespace quav::test
