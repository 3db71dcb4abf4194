#pragma once

#include <QImage>

#include <taglib/tbytevector.h>

namespace quav {

/// MIME type of what `pngOf` makes.
inline constexpr const char* albumArtMimeType = "image/png";

/// The picture as a PNG file, losslessly; empty when the picture is null.
TagLib::ByteVector pngOf(const QImage& picture);

/// The picture in an encoded file of any kind that Qt reads; null (with a line in the log) when it
/// cannot be decoded.
QImage pictureOf(const TagLib::ByteVector& encoded);

} // namespace quav
