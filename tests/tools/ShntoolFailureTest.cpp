#include "support/Table.h"
#include "tools/PcmFixtures.h"
#include "tools/ShntoolFolder.h"

#include <QTest>

#include <sys/stat.h>

#include <csignal>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

QByteArray flipped(QByteArray file, qsizetype at) {
    file[at] = char(file[at] ^ 0x40);
    return file;
}

} // namespace

/// What our shntool does with bad input and when it is interrupted.
class ShntoolFailureTest : public QObject, ShntoolFolder {
    Q_OBJECT

private Q_SLOTS:
    void init() { emptyOutputs(); }

    void badInputIsToldAndNothingIsLost_data() {
        QTest::addColumn<QString>("limit"); // of the shell
        columns<QString, QByteArray>("command", "told");
        row("a FLAC file cut short", u""_s, u"conv -d o cut.flac"_s, "cut.flac: is damaged"_ba);
        row("a bit of a FLAC file", u""_s, u"conv -d o -o wv bit.flac"_s,
            "bit.flac: is damaged"_ba);
        row("samples that are not the right ones", u""_s, u"conv -d o -o wav sum.flac"_s,
            "do not match its MD5"_ba);
        row("joined with them", u""_s, u"join -d o sum.flac a.wav"_s, "failed to join"_ba);
        row("a bit of an APE file", u""_s, u"trim -d o bit.ape"_s, "bit.ape"_ba);
        row("a bit of a TTA file", u""_s, u"split -l 0:00.50 -d o bit.tta"_s, "bit.tta"_ba);
        row("a WavPack file cut short", u""_s, u"conv -d o cut.wv"_s, "while transferring"_ba);
        row("a WAV file cut short", u""_s, u"pad -d o cut.wav"_s, "while transferring"_ba);
        row("no channels", u""_s, u"len none.wav"_s, "describes no sound"_ba);
        row("a chunk of gigabytes", u""_s, u"conv -d o huge.wav"_s, "more than 16 MiB"_ba);
        row("a full disk", u"ulimit -f 100"_s, u"conv -d o a.wav"_s, "File too large"_ba);
        row("a full disk for an encoder", u"ulimit -f 20"_s, u"conv -o flac -d o a.wav"_s,
            "child encoder process"_ba);
        row("no such encoder", u""_s, uR"(conv -o "cust ext=x quav-none %f" -d o a.wav)"_s,
            "cannot run program: [quav-none]"_ba);
        row("another file's place", u""_s, u"fix -O always -d . a.wav s.wav"_s,
            "would overwrite input file"_ba);
        row("a source by another name", u""_s, u"conv -O always -n link.wav a.wav"_s,
            "would overwrite input file"_ba);
        row("the last of three in the way", u""_s,
            u"split -O never -n %d -a way -l 0:00.50 a.wav"_s, "could not open output file"_ba);
        row("a source that comes later", u""_s, u"conv -O always -d . other/a.wav s.wav a.wav"_s,
            "would overwrite input file"_ba);
        row("two sources of one name", u""_s,
            u"conv -O always -o null -d o other/a.wav s.wav none.wav"_s, "describes no sound"_ba);
        row("a decoder that fails in the end", u""_s,
            uR"(conv -i "flac flac -c -d -s %f" -d o sum.flac)"_s, "had non-zero exit status 1"_ba);
        row("an encoder that fails unseen", u"trap '' CHLD"_s,
            uR"(conv -o "cust ext=x false %f" -d o s.wav)"_s, "child encoder process"_ba);
        row("sizes that overflow", u""_s, u"fix -d o wrap.wav s.wav"_s,
            "a size that no file has"_ba);
        row("a FLAC file that tells too little", u""_s, u"conv -d o little.flac"_s,
            "61440 samples stand behind"_ba);
        row("a folder for a list", u""_s, u"len -F ."_s, "could not open input filename file"_ba);
        row("a folder for split points", u""_s, u"split -f . a.wav"_s,
            "could not open split point file"_ba);
        row("a name that is too long", u""_s, u"split -d o -t %t -f long.cue a.wav"_s,
            "File name too long"_ba);
        row("a link that leads nowhere", u""_s, u"conv -O always -o flac -n nowhere a.wav"_s,
            "is not written over"_ba);
        row("two tracks of one name", u""_s, u"fix -d o a.wav other/a.wav"_s,
            "duplicate filenames: [o/a.wav]"_ba);
        row("a name for two files", u""_s, u"conv -n o/x.wav a.wav s.wav"_s, "exactly one"_ba);
        row("two files to split", u""_s, u"split -d o -l 0:01 a.wav s.wav"_s, "exactly one"_ba);
        row("an encoder that does not end", u""_s, u"conv -o cust ext=x { flac a.wav"_s,
            "no closing }"_ba);
    }
    void badInputIsToldAndNothingIsLost() {
        QFETCH(QString, limit);
        QFETCH(QString, command);
        QFETCH(QByteArray, told);
        // Of just this length, a decoder has passed on all samples before it compares their digest.
        const QByteArray wav = wavFile(waves(65536, 16, 2), 2, 16, 44100);
        write(u"a.wav"_s, wav);
        write(u"s.wav"_s, wavFile(waves(5000, 16, 2), 2, 16, 44100));
        QDir(path({})).mkdir(u"other"_s);
        write(u"other/a.wav"_s, wav);
        write(u"way3.wav"_s, "something of value");
        write(u"cut.wav"_s, wav.first(100'001));
        write(u"none.wav"_s, QByteArray(wav).replace(22, 2, QByteArray(2, '\0')));
        write(u"huge.wav"_s, QByteArray(wav).replace(36, 8, "JUNK\xF0\xFF\xFF\x7F"));
        QFile::link(u"a.wav"_s, path(u"link.wav"_s));
        QVERIFY(make(u"flac -s -f a.wav -o a.flac"_s) && make(u"wavpack -q -y a.wav -o cut.wv"_s));
        const QByteArray flac = contents(path(u"a.flac"_s));
        write(u"cut.flac"_s, flac.first(flac.size() / 2));
        write(u"bit.flac"_s, flipped(flac, flac.size() / 2));
        write(u"sum.flac"_s, flipped(flac, 30));
        // The number of samples stands in front of their digest.
        write(u"little.flac"_s, QByteArray(flac)
                                    .replace(22, 4, QByteArray("\0\0\x10\0", 4))
                                    .replace(26, 16, QByteArray(16, '\0')));
        QByteArray wrap = QByteArray("RF64\xFF\xFF\xFF\xFFWAVEds64\x1C\0\0\0", 20) +
                          QByteArray("\0\0\1\0\0\0\0\0", 8) + QByteArray(8, '\xFF') +
                          QByteArray(12, '\0') + wav.mid(12);
        write(u"wrap.wav"_s, wrap.replace(wrap.indexOf("data") + 4, 4, QByteArray(4, '\xFF')));
        write(u"long.cue"_s, "TRACK 01 AUDIO\nTITLE a\nINDEX 01 0:00:00\nTRACK 02 AUDIO\nTITLE " +
                                 QByteArray(300, 'x') + "\nINDEX 01 0:01:00\n");
        QFile::link(u"no such file"_s, path(u"nowhere"_s));
        const QByteArray wv = contents(path(u"cut.wv"_s));
        write(u"cut.wv"_s, wv.first(wv.size() / 2));
        for (const QString& kind : {u"ape"_s, u"tta"_s}) {
            const Ran ran = shntool(u"conv -O always -o %1 -n bit.%1 a.wav"_s.arg(kind));
            QCOMPARE(ran.status, 0);
            const QByteArray file = contents(path(u"bit."_s + kind));
            write(u"bit."_s + kind, flipped(file, file.size() / 2));
        }
        const QStringList before = files();

        const Ran ran = shntool(QProcess::splitCommand(command), limit);
        QCOMPARE(ran.status, 1);
        QVERIFY2(ran.errors.contains(told), ran.errors.constData());
        QByteArray pieces; // that were complete before
        for (const QString& name : outputs()) {
            QVERIFY2(name.startsWith(u"split-track"_s), qUtf8Printable(name));
            pieces += samplesOf(contents(path(u"o/"_s + name)));
        }
        QVERIFY(samplesOf(wav).startsWith(pieces));
        QCOMPARE(files(), before);
        QCOMPARE(contents(path(u"other/a.wav"_s)), wav);
        QCOMPARE(contents(path(u"a.wav"_s)), wav);
        QCOMPARE(contents(path(u"way3.wav"_s)), "something of value"_ba);
    }

    // Of two sources with one name, the second must not take the first one's place.
    void twoOutputsOfOneNameAreOneTooMany() {
        QDir(path({})).mkdir(u"other"_s);
        write(u"a.wav"_s, wavFile(waves(5000, 16, 2), 2, 16, 44100));
        write(u"other/a.wav"_s, wavFile(waves(900, 16, 2), 2, 16, 44100));
        const Ran ran = shntool(u"conv -O always -o flac -d o a.wav other/a.wav"_s);
        QCOMPARE(ran.status, 1);
        QVERIFY(ran.errors.contains("has just been written"));
        QCOMPARE(digestOf(u"o/a.flac"_s), digestOf(u"a.wav"_s));
    }

    void anInterruptedRunLeavesNoHalfFile_data() {
        columns<QString, int>("command", "signal");
        for (const auto& [signal, name] : {std::pair{SIGTERM, "TERM"}, {SIGINT, "INT"}}) {
            row(("WAV, "_ba + name).constData(), u"conv -d o a.wav"_s, signal);
            row(("an encoder, "_ba + name).constData(),
                uR"(fix -d o -o "cust ext=x tee %f" b.wav a.wav)"_s, signal);
        }
    }
    void anInterruptedRunLeavesNoHalfFile() {
        QFETCH(QString, command);
        QFETCH(int, signal);
        const QByteArray wav = wavFile(waves(200000, 16, 2), 2, 16, 44100);
        write(u"a.wav"_s, wav);
        write(u"b.wav"_s, wavFile(waves(100, 16, 2), 2, 16, 44100));
        // A decoder that has given half of the file when the rest does not come.
        ::mkfifo(qUtf8Printable(path(u"never"_s)), 0600);
        const QString decoder = write(u"decoder"_s, "#!/bin/sh\nhead -c 500000 \"$1\"\nexec cat " +
                                                        path(u"never"_s).toUtf8() + "\n");
        QFile(decoder).setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
        QProcess process;
        process.setWorkingDirectory(path({}));
        QStringList arguments = QProcess::splitCommand(command);
        arguments.insert(1, u"-iwav "_s + decoder + u" %f"_s);
        process.start(program, arguments);
        QVERIFY(process.waitForStarted(quav::test::patience));
        QByteArray told;
        QTRY_VERIFY((told += process.readAllStandardError()).contains("[a.wav]"));
        if (command.startsWith(u"fix")) {
            QTRY_VERIFY(!outputs().filter(u".quav-"_s).isEmpty());
        }
        ::kill(pid_t(process.processId()), signal);
        QVERIFY(process.waitForFinished(quav::test::patience));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QVERIFY(outputs().filter(u".quav-"_s).isEmpty());
        QVERIFY(!outputs().contains(u"a.x"_s) && !outputs().contains(u"a.wav"_s));
        QCOMPARE(contents(path(u"a.wav"_s)), wav);
    }
};

QTEST_GUILESS_MAIN(ShntoolFailureTest)
#include "ShntoolFailureTest.moc"
