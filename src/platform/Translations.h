#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

namespace quav {

/// The program's texts in the user's language, for as long as the object lives: the plurals of
/// English, over them the texts of the first language of the environment for which there are any.
class Translations {
public:
    Translations();
    ~Translations();

    /// Where the catalogues lie: in QUAV_TRANSLATIONS_DIR if that is set, else those of the
    /// installation if there is one, else those of the build.
    static QString standardFolder();

    /// The languages that the environment asks for, the best one first ("de_DE", "de"). As message
    /// catalogues elsewhere have it: LANGUAGE names several and counts before the locale, but not
    /// when the locale is "C". The locale itself need not be installed.
    static QStringList languages();

private:
    QTranslator plurals_;
    QTranslator texts_;
    QTranslator toolkit_; ///< what Qt says itself, on the buttons of its dialogs
};

} // namespace quav
