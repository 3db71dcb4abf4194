#include "app/FileKinds.h"

#include "platform/AudioProbe.h"
#include "platform/PathNames.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace quav {

namespace {

QStringList words(const char* list) {
    return QString::fromLatin1(list).split(u' ');
}

const QHash<QString, QStringList>& extensionMap() {
    static const QHash<QString, QStringList> map{
        {tabs::decode, words("FLAC SHN WV M4A TTA APE WAV AIFF AIF OPUS")},
        {tabs::encode, words("WAV AIF AIFF FLAC SHN WV TTA APE")},
        {tabs::checksum, words("WAV AIFF AIF FLAC SHN MD5 FFP TXT APE WV TTA ST5")},
        {tabs::shntool, words("FLAC SHN WAV AIF AIFF TTA WV APE")},
        {tabs::fixSBE, words("FLAC SHN WAV AIF AIFF WV TTA")},
        {tabs::lossy, words("FLAC SHN WAV AIFF AIF WV TTA")},
        {tabs::tags, words("FLAC M4A MP3 WV APE TTA AIF AIFF WAV")},
    };
    return map;
}

bool takesPlainAudio(const QStringList& extensions) {
    const std::array plain{QStringLiteral("WAV"), QStringLiteral("AIF"), QStringLiteral("AIFF")};
    return std::any_of(plain.begin(), plain.end(),
                       [&](const QString& word) { return extensions.contains(word); });
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
    if ((tabLabel == tabs::lossy || tabLabel == tabs::encode) && word == u"M4A") {
        return isAppleLossless(path);
    }
    return extensions.contains(word) || (takesPlainAudio(extensions) && isAiffOrWav(path));
}

bool isBookkeepingFile(const QString& path) {
    const QString name = lastPathComponent(path).toLower();
    return name == u".ds_store" || name == u".toc.plist";
}

} // namespace quav
