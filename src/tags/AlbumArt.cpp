#include "tags/AlbumArt.h"

#include <QBuffer>
#include <QByteArray>
#include <QDebug>

namespace quav {

TagLib::ByteVector pngOf(const QImage& picture) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (picture.isNull() || !picture.save(&buffer, "PNG")) {
        return {};
    }
    return {png.constData(), static_cast<unsigned int>(png.size())};
}

QImage pictureOf(const TagLib::ByteVector& encoded) {
    const QByteArray bytes(encoded.data(), static_cast<qsizetype>(encoded.size()));
    QImage picture = QImage::fromData(bytes);
    if (picture.isNull()) {
        qWarning().noquote() << "The picture in the tags cannot be decoded," << bytes.size()
                             << "bytes";
    }
    return picture;
}

} // namespace quav
