#include "tags/TagsObject.h"

#include <algorithm>

namespace quav {

const std::array<TagsObject::Text TagsObject::*, 14>& TagsObject::textFields() {
    static constexpr std::array<Text TagsObject::*, 14> fields = {
        &TagsObject::titleText,     &TagsObject::artistText,  &TagsObject::albumArtistText,
        &TagsObject::yearText,      &TagsObject::monthText,   &TagsObject::dayText,
        &TagsObject::albumText,     &TagsObject::commentText, &TagsObject::discText,
        &TagsObject::discTotalText, &TagsObject::trackText,   &TagsObject::trackTotalText,
        &TagsObject::genreText,     &TagsObject::composerText};
    return fields;
}

bool TagsObject::isEqualToTagsObject(const TagsObject& other) const {
    const auto sameText = [this, &other](Text TagsObject::*field) {
        return stringTagsEqual(this->*field, other.*field);
    };
    return std::ranges::all_of(textFields(), sameText) && picturesEqual(albumArt, other.albumArt);
}

bool TagsObject::stringTagsEqual(const Text& a, const Text& b) {
    return a == b;
}

bool TagsObject::picturesEqual(const QImage& a, const QImage& b) {
    if (a.isNull() || b.isNull()) {
        return a.isNull() && b.isNull();
    }
    // QImage calls two pictures of different pixel formats different, whatever they show.
    constexpr auto common = QImage::Format_RGBA64;
    return a.size() == b.size() && a.convertToFormat(common) == b.convertToFormat(common);
}

} // namespace quav
