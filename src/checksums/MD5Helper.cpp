#include "checksums/MD5Helper.h"

#include "platform/RegularFile.h"

#include <QCryptographicHash>

#include <cstdint>
#include <vector>

namespace quav {

QString MD5Helper::getMD5FromFile(const QString& path) {
    constexpr std::size_t pieceSize = std::size_t(1) << 20;
    auto file = RegularFile::open(path);
    if (!file) {
        return {};
    }
    QCryptographicHash digest(QCryptographicHash::Md5);
    std::vector<std::uint8_t> piece(pieceSize);
    while (true) {
        const auto count = file->read(piece);
        if (!count) {
            return {};
        }
        if (*count == 0) {
            return QString::fromLatin1(digest.result().toHex());
        }
        digest.addData(QByteArrayView(piece.data(), static_cast<qsizetype>(*count)));
    }
}

} // namespace quav
