#include "app/Formats.h"

#include "platform/PathNames.h"

#include <algorithm>

namespace quav {

QStringList TestCall::arguments(const QString& path) const {
    const QString given = QString::fromLatin1(option);
    return pathFirst ? QStringList{path, given} : QStringList{given, path};
}

QStringList AudioFormat::words() const {
    QStringList all{name()};
    if (otherWord) {
        all << QString::fromLatin1(otherWord);
    }
    return all;
}

const AudioFormat* formatOf(const QString& path) {
    const QString word = formatWord(path);
    const auto* const found =
        std::find_if(audioFormats.begin(), audioFormats.end(), [&](const AudioFormat* format) {
            return word == QLatin1StringView(format->word) ||
                   (format->otherWord && word == QLatin1StringView(format->otherWord));
        });
    return found == audioFormats.end() ? nullptr : *found;
}

} // namespace quav
