#pragma once

#include <QImage>
#include <QMap>
#include <QString>

#include <array>
#include <optional>

namespace quav {

/// The common tags of one audio file, as every tag reader and writer exchanges them.
///
/// A text may be absent; absent and empty are two different things for equality, while writers
/// treat both as "nothing to write". A null `albumArt` means that there is no picture.
struct TagsObject {
    using Text = std::optional<QString>;

    Text titleText;
    Text artistText;
    Text albumArtistText;
    Text yearText;  ///< Up to four digits.
    Text monthText; ///< Two digits, or "0" when the form's field was empty.
    Text dayText;   ///< Two digits, or "0" when the form's field was empty.
    Text albumText;
    Text commentText;
    Text discText;
    Text discTotalText;
    Text trackText;
    Text trackTotalText;
    Text genreText;
    Text composerText;

    Text encoderSettings; ///< Filled by the lossy encoders for the MP4 writer.
    QImage albumArt;
    QMap<QString, QString> customTagsDictionary; ///< Free-form tags, name to value.

    /// The fourteen text fields in the order above, `titleText` to `composerText`.
    static const std::array<Text TagsObject::*, 14>& textFields();

    /// True when the fourteen texts are pairwise equal and the pictures show the same pixels.
    /// `encoderSettings` and `customTagsDictionary` take no part.
    bool isEqualToTagsObject(const TagsObject& other) const;

    /// True when both texts are absent, or both are present and identical.
    static bool stringTagsEqual(const Text& a, const Text& b);

    /// True when both pictures are absent, or both show the same pixels in the same size.
    static bool picturesEqual(const QImage& a, const QImage& b);
};

} // namespace quav
