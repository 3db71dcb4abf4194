#include "codecs/FlacOutput.h"

#include "codecs/FlacCommand.h"
#include "engine/ToolOutputReader.h"
#include "support/Table.h"

#include <QTest>

using namespace quav;
using namespace Qt::StringLiterals;
using quav::test::row;

namespace {

/// An update in place, as it arrives.
QString backspaces(int count, const char* update) {
    return QString(count, u'\b') + QString::fromLatin1(update);
}

} // namespace

class FlacOutputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void decodePercentages_data() {
        QTest::addColumn<QString>("piece");
        QTest::addColumn<double>("percent"); // below zero: none
        row("first", "big.flac: 61% complete", 61.0);
        row("update", backspaces(12, "99% complete"), 99.0);
        row("end", backspaces(12, "done         \n"), -1.0);
        row("banner", "flac 1.4.2\n", -1.0);
        row("misleading name", "100% live: it's.flac: 61% complete", 0.0);
    }
    void decodePercentages() {
        QFETCH(QString, piece);
        QFETCH(double, percent);
        QCOMPARE(flacoutput::decodePercentage(piece).value_or(-1), percent);
    }

    void encodeProgress_data() {
        QTest::addColumn<QString>("piece");
        QTest::addColumn<QString>("percentText");
        QTest::addColumn<double>("percent");
        QTest::addColumn<QString>("detail");
        row("first", "big.wav: 28% complete, ratio=0.490", "28", 28.0, "ratio=0.490");
        row("update", backspaces(25, "57% complete, ratio=0.494"), "57", 57.0, "ratio=0.494");
        row("comma locale", "big.wav: 31% complete, ratio=0,491", "31", 31.0, "ratio=0,491");
        row("two updates", "57% complete, ratio=0.49458% complete", "57", 57.0, "ratio=0.494");
        row("end", backspaces(25, "wrote 26694779 bytes, ratio=0.504\n"), "", -1.0, "");
        row("misleading name", "a: b%.wav: 28% complete, ratio=0.490", "b", 0.0, "ratio=0.490");
    }
    void encodeProgress() {
        QFETCH(QString, piece);
        const auto progress = flacoutput::encodeProgress(piece);
        QTEST(progress.percentText, "percentText");
        QTEST(progress.percent, "percent");
        QTEST(progress.detail, "detail");
    }

    void progressDoesNotDependOnTheCuts() {
        const QByteArray bytes = "big.wav: 28% complete, ratio=0.490" + QByteArray(25, '\b') +
                                 "57% complete, ratio=0.494" + QByteArray(25, '\b') +
                                 "wrote 9 bytes, ratio=0.504\n";
        for (qsizetype cut = 0; cut <= bytes.size(); ++cut) {
            ToolOutputReader pieces;
            QStringList got = pieces.feed(bytes.left(cut));
            got << pieces.feed(bytes.mid(cut));
            QStringList seen;
            for (const QString& piece : got) {
                const auto progress = flacoutput::encodeProgress(piece);
                seen << progress.percentText + u' ' + progress.detail;
            }
            QCOMPARE(seen.join(u'|'), u"28 ratio=0.490|57 ratio=0.494| ");
        }
    }

    void complaints_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<int>("complaint");
        const auto says = [](const char* line, ToolComplaint complaint) {
            row(line, QString::fromLatin1(line), static_cast<int>(complaint));
        };
        says("ERROR.wav: ERROR, MD5 signature mismatch", ToolComplaint::Damage);
        says("ERROR.wav: WARNING: unexpected EOF; expected 9 samples, got 5 samples",
             ToolComplaint::Damage);
        says("ERROR.wav: WARNING: skipping unknown chunk 'fact'", ToolComplaint::Warning);
        says("ERROR.wav: done", ToolComplaint::None);
    }
    void complaints() {
        QFETCH(QString, line);
        QTEST(static_cast<int>(flacoutput::complaintIn(line, u"ERROR.wav"_s)), "complaint");
    }

    void commandLines_data() {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("arguments");
        const QString source = u"/m/a b.wav"_s;
        const QString output = u"/o/a b.flac"_s;
        row("plain", "-5 S -o O", flacEncodeArguments({}, source, output));
        row("everything", "-8 --keep-foreign-metadata -V -f S -o O",
            flacEncodeArguments({8, false, true, true, true}, source, output));
        row("lax has no level", "--lax -V S -o O",
            flacEncodeArguments({8, true, false, true, false}, source, output));
        row("to WAV", "-d S -o O", flacDecodeArguments({u"WAV"_s, false, false}, source, output));
        row("to AIFF", "-d --keep-foreign-metadata -F --force-aiff-format S -o O",
            flacDecodeArguments({u"AIFF"_s, true, true}, source, output));
    }
    void commandLines() {
        QFETCH(QString, line);
        QFETCH(QStringList, arguments);
        arguments.replaceInStrings(u"/m/a b.wav"_s, u"S"_s);
        arguments.replaceInStrings(u"/o/a b.flac"_s, u"O"_s);
        QCOMPARE(arguments.join(u' '), line);
    }
};

QTEST_APPLESS_MAIN(FlacOutputTest)
#include "FlacOutputTest.moc"
