#include "support/Patience.h"
#include "support/Table.h"

#include <QProcess>
#include <QTest>

using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

struct Ended {
    int exitStatus = -1;
    QString output;
};

/// Runs the program in an environment that asks for languages. None of their locales is installed.
Ended runIn(const QString& language, const QString& locale, const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"QUAV_TRANSLATIONS_DIR"_s);
    environment.remove(u"LC_ALL"_s);
    environment.remove(u"LC_MESSAGES"_s);
    environment.insert(u"LANGUAGE"_s, language);
    environment.insert(u"LANG"_s, locale);
    QProcess program;
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(QUAV_CLI), arguments);
    program.waitForFinished(patience);
    return {program.exitCode(), QString::fromUtf8(program.readAll())};
}

} // namespace

class TranslationsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void speaksTheLanguageOfTheEnvironment_data() {
        columns<QString, QString, QString>("language", "locale", "says");
        const QString english = u"does not exist."_s;
        const QString german = u"gibt es nicht."_s;
        row("nothing is asked for", QString(), QString(), english);
        row("a locale that is not installed", QString(), u"de_AT.UTF-8"_s, german);
        row("a language before the locale", u"de"_s, u"en_GB.UTF-8"_s, german);
        row("English before German", u"en:de"_s, u"de_DE.UTF-8"_s, english);
        row("a language without texts first", u"xh:de"_s, u"en_GB.UTF-8"_s, german);
        row("the plain locale", u"de"_s, u"C"_s, english);
    }
    void speaksTheLanguageOfTheEnvironment() {
        QFETCH(QString, language);
        QFETCH(QString, locale);
        const Ended ended = runIn(
            language, locale, {u"encode"_s, u"--to"_s, u"flac"_s, u"--beside"_s, u"/nowhere"_s});
        QTEST(ended.output.trimmed().section(u"” "_s, -1).section(u"“ "_s, -1), "says");
    }

    /// What other programs read is the same in every language.
    void printsTheSameJson() {
        const QStringList arguments{u"settings"_s, u"list"_s, u"--json"_s};
        const Ended german = runIn(u"de"_s, QString(), arguments);
        QCOMPARE(german.exitStatus, 0);
        QCOMPARE(german.output, runIn(QString(), QString(), arguments).output);
    }
};

QTEST_GUILESS_MAIN(TranslationsTest)
#include "TranslationsTest.moc"
