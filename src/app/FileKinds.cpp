#include "app/FileKinds.h"

#include "app/Formats.h"
#include "platform/AudioProbe.h"
#include "platform/PathNames.h"

#include <QHash>

namespace quav {

namespace {

/// The lists of checksums, which are no audio, stand beside what they may be about.
QStringList wordsFor(AudioFormat::Taker taker) {
    QStringList words;
    for (const AudioFormat* format : audioFormats) {
        if (format->isTakenBy(taker)) {
            words << format->words();
        }
    }
    if (taker == AudioFormat::Checksum) {
        words << QStringLiteral("MD5") << QStringLiteral("FFP") << QStringLiteral("TXT")
              << QStringLiteral("ST5");
    }
    return words;
}

const QHash<QString, QStringList>& extensionMap() {
    static const QHash<QString, QStringList> map{
        {tabs::decode, wordsFor(AudioFormat::Decode)},
        {tabs::encode, wordsFor(AudioFormat::Encode)},
        {tabs::checksum, wordsFor(AudioFormat::Checksum)},
        {tabs::shntool, wordsFor(AudioFormat::Shntool)},
        {tabs::fixSBE, wordsFor(AudioFormat::FixSBE)},
        {tabs::lossy, wordsFor(AudioFormat::Lossy)},
        {tabs::tags, wordsFor(AudioFormat::Tags)},
    };
    return map;
}

bool takesPlainAudio(const QStringList& extensions) {
    return extensions.contains(formats::wav.name()) || extensions.contains(formats::aiff.name());
}

} // namespace

const QStringList& acceptedExtensions(const QString& tabLabel) {
    static const QStringList none;
    const auto found = extensionMap().constFind(tabLabel);
    return found == extensionMap().constEnd() ? none : *found;
}

bool isValidFile(const QString& tabLabel, const QString& path) {
    const QStringList& extensions = acceptedExtensions(tabLabel);
    if (extensions.isEmpty() || tabLabel == tabs::checksum) {
        return true;
    }
    const QString word = formatWord(path);
    if (word.isEmpty()) {
        return false;
    }
    if ((tabLabel == tabs::lossy || tabLabel == tabs::encode) && word == formats::m4a.name()) {
        return isAppleLossless(path);
    }
    return extensions.contains(word) || (takesPlainAudio(extensions) && isAiffOrWav(path));
}

bool isBookkeepingFile(const QString& path) {
    const QString name = lastPathComponent(path).toLower();
    return name == u".ds_store" || name == u".toc.plist";
}

} // namespace quav
