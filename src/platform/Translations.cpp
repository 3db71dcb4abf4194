#include "platform/Translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>

namespace quav {

namespace {

QString messageLocale() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        QString value = qEnvironmentVariable(name);
        if (!value.isEmpty()) {
            return value;
        }
    }
    return {};
}

/// "de_DE.UTF-8@euro" as "de_DE".
QString withoutEncoding(const QString& locale) {
    return locale.section(u'.', 0, 0).section(u'@', 0, 0);
}

void install(QTranslator& translator) {
    QCoreApplication::installTranslator(&translator);
}

} // namespace

Translations::Translations() {
    const QString folder = standardFolder();
    if (plurals_.load(QStringLiteral("quav_en"), folder)) {
        install(plurals_);
    }
    for (const QString& language : languages()) {
        if (QLocale(language).language() == QLocale::English) {
            return;
        }
        // Tries "de_DE", then "de".
        if (texts_.load(QStringLiteral("quav_") + language, folder)) {
            if (toolkit_.load(QStringLiteral("qtbase_") + language,
                              QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
                install(toolkit_);
            }
            install(texts_);
            return;
        }
    }
}

Translations::~Translations() = default;

QString Translations::standardFolder() {
    const QString chosen = qEnvironmentVariable("QUAV_TRANSLATIONS_DIR");
    if (!chosen.isEmpty()) {
        return QDir(chosen).absolutePath();
    }
    const QDir program(QCoreApplication::applicationDirPath());
    const QString installed =
        program.absoluteFilePath(QStringLiteral("../share/quav/translations"));
    return QDir::cleanPath(QFileInfo(installed).isDir()
                               ? installed
                               : program.absoluteFilePath(QStringLiteral("translations")));
}

QStringList Translations::languages() {
    const QString locale = messageLocale();
    if (locale == u"C" || locale == u"POSIX") {
        return {};
    }
    QStringList languages;
    const QStringList wishes =
        qEnvironmentVariable("LANGUAGE").split(u':', Qt::SkipEmptyParts) + QStringList(locale);
    for (const QString& wish : wishes) {
        const QString language = withoutEncoding(wish);
        if (!language.isEmpty() && language != u"C") {
            languages << language;
        }
    }
    return languages;
}

} // namespace quav
