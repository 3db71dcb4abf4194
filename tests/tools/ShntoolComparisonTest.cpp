#include "support/Table.h"
#include "tools/PcmFixtures.h"
#include "tools/ToolFixtures.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QMap>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTest>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

const auto ours = QStringLiteral(QUAV_SHNTOOL);
const auto packaged = QStringLiteral("/usr/bin/shntool");

/// What a terminal shows in the end: progress is written with backspaces.
QByteArray shown(const QByteArray& text) {
    QByteArray done;
    QByteArray line;
    qsizetype at = 0;
    for (const char character : text) {
        if (character == '\b') {
            at = std::max<qsizetype>(at - 1, 0);
        } else if (character == '\n') {
            done += line + '\n';
            line.clear();
            at = 0;
        } else {
            line.replace(at++, 1, QByteArray(1, character));
        }
    }
    return done + line;
}

/// Without what differs from run to run: how far buffers let one get, and the numbers of processes.
QString normal(const QByteArray& text) {
    static const QRegularExpression percentage(u": +[0-9]+% (OK|ERROR)$"_s,
                                               QRegularExpression::MultilineOption);
    static const QRegularExpression process(u"child encoder process [0-9]+"_s);
    return QString::fromUtf8(shown(text))
        .replace(percentage, u": \\1"_s)
        .replace(process, u"child encoder process N"_s);
}

QByteArray patched(QByteArray file, qsizetype at, qsizetype number, int bytes = 4) {
    QByteArray field;
    appendNumber(field, static_cast<uint32_t>(number), bytes);
    return file.replace(at, bytes, field);
}

/// A plain header that claims some more bytes than follow.
QByteArray claiming(const QByteArray& file, qsizetype more) {
    return patched(patched(file, 4, file.size() - 8 + more), 40, file.size() - 44 + more);
}

/// With a format chunk of 18 bytes.
QByteArray widened(QByteArray file) {
    file.insert(36, QByteArray(2, '\0'));
    return patched(patched(file, 16, 18), 4, file.size() - 8);
}

/// So many sectors and blocks from some place of one long piece; at both ends, some samples are
/// silent.
std::vector<int> sound(int from, int sectors, int blocks = 0, int before = 0, int after = 0) {
    static const std::vector<int> piece = waves(588 * 400, 16, 2);
    const auto begin = piece.begin() + 2 * from;
    std::vector<int> samples(begin, begin + 2 * (588 * sectors + blocks));
    std::fill_n(samples.begin(), before, 0);
    std::fill_n(samples.rbegin(), after, 0);
    return samples;
}

QByteArray cdFile(const std::vector<int>& samples) {
    return wavFile(samples, 2, 16, 44100);
}

} // namespace

/// Holds our shntool against the packaged one. A row is a command line.
class ShntoolComparisonTest : public QObject, ToolFolder {
    Q_OBJECT

    QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();

    void writeSound() const {
        const QByteArray cd = cdFile(sound(0, 300)); // just long enough for a track
        write(u"cd.wav"_s, cd);
        write(u"cd2.wav"_s, cdFile(sound(5000, 75)));
        write(u"mis.wav"_s, cdFile(sound(100, 300, 100)));
        write(u"mis2.wav"_s, cdFile(sound(200, 150, 301)));
        write(u"mis3.wav"_s, cdFile(sound(300, 225, 500)));
        write(u"other.wav"_s, patched(patched(cd, 1044, 77, 1), 400000, 88, 1));
        write(u"later.wav"_s, cdFile(sound(10, 300)));
        write(u"fuzzy.wav"_s, patched(cdFile(sound(10, 300)), 5044, 99, 1));
        write(u"silb.wav"_s, cdFile(sound(0, 100, 0, 44101)));
        write(u"sile.wav"_s, cdFile(sound(0, 100, 0, 0, 5555)));
        write(u"sil.wav"_s, cdFile(sound(0, 100, 0, 2 * 588 * 9 + 6, 2 * 588 * 10 + 3)));
        write(u"silent.wav"_s, cdFile(sound(0, 50, 0, 2 * 588 * 50)));
        write(u"kept.wav"_s, cd);
        write(u"-dash.wav"_s, cdFile(sound(0, 10)));
        const QStringList names = u"01 'Live' [at] (home).wav|100% \"ü\" 5%d.wav|noext|UPPER.WAV|"
                                  "a.b.wav|x;y & $z.wav"_s.split(u'|');
        for (const QString& name : names) {
            write(name, cdFile(sound(int(100 * name.size()), 10)));
        }
        write(u"names"_s, (names.join(u'\n') + u'\n').toUtf8());
    }

    void writeOddHeaders() const {
        const QByteArray plain = cdFile(sound(0, 30));
        const QByteArray before = listChunk("IART", QByteArray("tester\0\0", 8));
        const QByteArray after = listChunk("INAM", QByteArray("trailer\0", 8));
        const QByteArray byte = wavFile(waves(11025, 8, 1), 1, 8, 11025);
        const QMap<QString, QByteArray> odd{
            {u"wide.wav"_s, widened(plain)},
            {u"wide2.wav"_s, widened(wavFile(sound(0, 30, 50), 2, 16, 44100, before))},
            {u"list.wav"_s, wavFile(sound(0, 30), 2, 16, 44100, before, after)},
            {u"after.wav"_s, wavFile(sound(0, 30), 2, 16, 44100, {}, after)},
            {u"silx.wav"_s, wavFile(sound(0, 30, 0, 999, 3331), 2, 16, 44100, before, after)},
            {u"riff100.wav"_s, patched(plain, 4, 100)},
            {u"riff0.wav"_s, patched(plain, 4, 0)},
            {u"junk.wav"_s, plain + QByteArray(77, 'x')},
            {u"cut.wav"_s, claiming(plain, 1000)},
            {u"id3.wav"_s, QByteArray("ID3\3\0\0\0\0\0\x14", 10) + QByteArray(20, '\0') + plain},
            {u"partial.wav"_s, claiming(plain + "abc", 0)}, // of a block
            {u"align.wav"_s, patched(plain, 32, 2, 2)},
            {u"average.wav"_s, patched(plain, 28, 1234)},
            {u"float.wav"_s, patched(wavFile(waves(1000, 16, 2), 2, 32, 44100), 20, 3, 2)},
            {u"deep.wav"_s, wavFile(waves(20000, 24, 2), 2, 24, 44100)},
            {u"byte.wav"_s, byte},
            {u"unpadded.wav"_s, claiming(byte.chopped(1), 0)},
            {u"mono.wav"_s, wavFile(waves(20000, 16, 1), 1, 16, 44100)},
            {u"dat.wav"_s, wavFile(waves(50007, 16, 2), 2, 16, 48000)},
            {u"one.wav"_s, pcmFixture("one")},
            {u"none.wav"_s, cdFile({})},
            {u"empty.wav"_s, {}},
            {u"text.wav"_s, "no audio at all\n"},
            {u"riff.wav"_s, plain.first(12)},
            {u"format.wav"_s, plain.first(36)}};
        for (const auto& [name, content] : odd.asKeyValueRange()) {
            write(name, content);
        }
        QStringList names = odd.keys();
        // Of a file whose header tells a wrong rate, the packaged one adds a wrong length.
        names.removeOne(u"average.wav"_s);
        write(u"odd"_s, (names.join(u'\n') + u'\n').toUtf8());
    }

    void writePoints() const {
        for (const QByteArray& points :
             "sec=0:01\n0:02|frames=0:01.10\n0:02.74\n|millis=0:01.100\n0:02.305\n0:03.001\n|"
             "bytes=176401\n352800\n|crlf=0:01\r\n0:02\r\n|zero=0\n0:01\n|down=0:02\n0:01\n|"
             "twice=0:02\n0:02\n|end=0:02\n0:04\n|beyond=0:02\n0:09\n|blank=0:01\n\n0:02\n|"
             "nothing=|words=soon\n|sixty=0:70\n|eighty=0:01.80\n|tiny=0:00.001\n"_ba.split('|')) {
            const qsizetype at = points.indexOf('=');
            write(QString::fromLatin1(points.first(at)), points.mid(at + 1));
        }
        QByteArray sheet = "PERFORMER \"The Band\"\nTITLE \"Album\"\nFILE \"cd.wav\" WAVE\n"
                           "TRACK 01 AUDIO\n TITLE \"One / first\"\n INDEX 01 00:00:00\n"
                           "TRACK 02 AUDIO\n TITLE \"Two: ü\"\n INDEX 01 00:01:00\n"
                           "TRACK 03 AUDIO\n TITLE \"Three?\"\n INDEX 01 00:02:33\n";
        const auto variant = [&](const QString& name, const char* from, const char* to) {
            write(name, QByteArray(sheet).replace(from, to));
        };
        write(u"cue"_s, sheet);
        variant(u"crlf.cue"_s, "\n", "\r\n");
        variant(u"same.cue"_s, "Three?", "Two: ü");
        variant(u"late.cue"_s, "00:00:00", "00:00:33");
        variant(u"pregap.cue"_s, " INDEX 01 00:01",
                " PERFORMER \"B\"\n INDEX 00 00:00:40\n INDEX 01 00:01");
    }

    /// All that a run leaves behind, for a reader. Both programs name their outputs alike.
    QString outcome(const QString& program, const QStringList& arguments) const {
        QDir out(path(u"o"_s));
        out.removeRecursively();
        out.mkpath(u"."_s);
        write(u"o/kept.wav"_s, "already here");
        QProcess process;
        process.setWorkingDirectory(path({}));
        process.setProcessEnvironment(environment_);
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(program, arguments);
        const bool ended = process.waitForFinished(quav::test::patience) &&
                           process.exitStatus() == QProcess::NormalExit;
        QString left = u"status: %1\noutput:\n%2errors:\n%3files:\n"_s.arg(
            ended ? QString::number(process.exitCode()) : u"did not end by itself"_s,
            normal(process.readAllStandardOutput()), normal(process.readAllStandardError()));
        for (const QString& name : out.entryList(QDir::Files | QDir::Hidden)) {
            QByteArray bytes = contents(out.filePath(name));
            if (name.endsWith(u".aiff")) { // ours writes that by itself: only the sound is alike
                bytes = judged(out.filePath(name), 16);
                bytes = bytes.isEmpty() ? program.toUtf8() : bytes; // matches nothing
            }
            const auto digest = QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
            left += u"%1: %2 bytes, %3\n"_s.arg(name, QString::number(bytes.size()),
                                                QString::fromLatin1(digest));
        }
        return left;
    }

    static void columns() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("pattern"); // of what the packaged one alone does
        QTest::addColumn<QString>("instead"); // what ours does there
    }
    /// A row for each text between bars, with the beginning before it.
    static void agree(const QByteArray& beginning, const QByteArray& ends,
                      const QString& pattern = {}, const QString& instead = {}) {
        for (const QByteArray& end : ends.split('|')) {
            const QByteArray command = (beginning + ' ' + end).simplified();
            row(command.constData(), QString::fromUtf8(command), pattern, instead);
        }
    }
    /// Ours ends an open line before an error, which the packaged one writes into it.
    static void endsItsLine(const QByteArray& beginning, const QByteArray& end) {
        agree(beginning, end, u": +[0-9]+% \n?(?=shntool)"_s, u": ERROR\n"_s);
    }
    QByteArray oddNames() const { return contents(path(u"odd"_s)).trimmed().replace('\n', '|'); }

    void compare() const {
        QFETCH(QString, command);
        QFETCH(QString, pattern);
        QFETCH(QString, instead);
        const QStringList arguments = QProcess::splitCommand(command);
        QStringList theirs = arguments;
        if (theirs.first() == u"join" || theirs.first() == u"fix") {
            theirs.insert(1, u"-rnone"_s); // ours keeps the order in which files are given
        }
        QString wanted = outcome(packaged, theirs);
        if (!pattern.isEmpty()) {
            QVERIFY2(wanted.contains(QRegularExpression(pattern)), qUtf8Printable(wanted));
            wanted.replace(QRegularExpression(pattern), instead);
        }
        const QString got = outcome(ours, arguments);
        if (got != wanted) { // what QCOMPARE says would be cut off
            qInfo().noquote() << u"-- packaged:\n%1-- ours:\n%2"_s.arg(wanted, got);
            QFAIL("ours differs as shown above");
        }
    }

private Q_SLOTS:
    void initTestCase() {
        if (!QFileInfo::exists(packaged)) {
            QSKIP("Debian's package shntool is not installed: there is nothing to compare with");
        }
        const QString tools = QFileInfo(ours).path();
        environment_.insert(u"PATH"_s, tools + u':' + environment_.value(u"PATH"_s));
        writeSound();
        writeOddHeaders();
        writePoints();
        const auto make = [&](const QString& tool, const QStringList& arguments) {
            QProcess process;
            process.setWorkingDirectory(path({}));
            process.start(tools + u'/' + tool, arguments);
            return process.waitForFinished(quav::test::patience) && process.exitCode() == 0;
        };
        QVERIFY(make(u"flac"_s, {u"-s"_s, u"mis.wav"_s, u"byte.wav"_s, u"dat.wav"_s}));
        for (const QString& name : {u"mis"_s, u"byte"_s}) { // whole, with another MD5
            write(name + u"-md5.flac"_s,
                  contents(path(name + u".flac"_s)).replace(26, 16, "no digest of any"));
        }
        QVERIFY(make(u"shorten"_s, {u"mis2.wav"_s, u"mis2.shn"_s}));
        QVERIFY(make(u"mac"_s, {u"cd2.wav"_s, u"cd2.ape"_s, u"-c2000"_s}));
        QVERIFY(make(u"ttaenc"_s, {u"-e"_s, u"-o"_s, u"mis3.tta"_s, u"mis3.wav"_s}));
    }

    void reports_data() {
        columns();
        agree("len", R"(cd.wav | -c cd.wav mis.wav | -t cd2.wav | -c -t cd.wav cd2.wav |  | . |
            cd.wav -c | -H cd.wav dat.wav | -u kb -U mb cd.wav mis.wav | -u mb -U kb cd.wav |
            -u gb -U tb cd.wav | missing.wav cd.wav text.wav empty.wav | missing.wav | -F odd |
            -w -F odd | -F names | -t average.wav | -- -dash.wav | -q missing.wav cd.wav |
            -r ascii UPPER.WAV a.b.wav noext |
            mis.wav mis.flac mis2.shn mis3.tta cd2.ape byte.flac dat.flac |
            -r none mis.wav cd.wav)");
        agree("info", R"(mis.flac | mis2.shn | cd2.ape mis3.tta byte.flac | -H cd.wav | -F names |
            cd.wav missing.wav mis.wav)");
        // Ours prints nothing before it knows all the names.
        agree("len", "-F missing", u"    length.*\n"_s);
        agree("info", oddNames() + "|average.wav");
        agree("cue", R"(cd.wav mis2.wav cd2.wav | -s cd.wav | -s cd.wav mis.flac cd2.wav |
            -s dat.wav dat.flac | -s cd.wav dat.wav | -s missing.wav | list.wav cut.wav cd2.wav)");
        // The packaged one has printed half a sheet when it finds out.
        agree("cue",
              "-c cd.wav dat.flac mis.flac | missing.wav | cd.wav dat.wav | "
              "cd.wav missing.wav cd2.wav | ",
              u"(?<=output:\n)FILE(.*\n)+?(?=errors:)"_s);
        agree("cmp", R"(cd.wav cd.wav | mis.wav mis.flac | mis2.shn mis2.wav | cd.wav other.wav |
            cd.wav mis.wav | cd.wav kept.wav | -s cd.wav later.wav | cd.wav |
            -s later.wav cd.wav | -s -c 1 cd.wav later.wav | -s -f 8 cd.wav fuzzy.wav |
            -s cd.wav fuzzy.wav | -s cd.wav cd.wav | cd.wav dat.wav |
            -s cd2.wav mis2.wav | cd.wav mono.wav | byte.wav mono.wav | cd.wav deep.wav |
            cd.wav missing.wav | missing.wav cd.wav | cd.wav cd.wav cd2.wav | list.wav after.wav |
            -q cd.wav other.wav | -P dot cd.wav cd.wav | cut.wav wide.wav)");
        // Behind its list of bytes, the packaged one begins another line of progress.
        agree("cmp", "-l cd.wav other.wav | -s -l -f 8 fuzzy.wav cd.wav",
              u"Comparing .* :   0% (?=\n)"_s);
        agree("hash", R"(cd.wav mis.flac | -m mis.wav | -s cd2.wav cd2.ape | -F names | -q cd.wav |
            -c cd.wav mis.wav cd2.wav | -c -s cd.wav mis.flac | cut.wav cd.wav | -P face cd.wav |
            -c cd.wav missing.wav | -c dat.wav cd.wav |
            byte.wav unpadded.wav partial.wav list.wav junk.wav none.wav id3.wav)");
        // Ours warns of it.
        for (const char* hash : {"hash", "hash -s", "hash -c"}) {
            for (const QByteArray& name : {"mis-md5.flac"_ba, "byte-md5.flac"_ba}) {
                agree(
                    hash, name, u"OK\n(?=files)"_s,
                    u"OK\nshntool [hash]: warning: the MD5 that the file stores is not that of its "
                    "samples: [%1]\n"_s.arg(QString::fromLatin1(name)));
            }
        }
        // Ours warns once of a file that it cannot read.
        agree("hash", "missing.wav cd.wav", u"(shntool.*\n)\\1"_s, u"\\1"_s);
        agree("hash", "text.wav missing.wav", u"((shntool.*\n){2})\\1"_s, u"\\1"_s);
        endsItsLine("hash", "-c cd.wav cut.wav");
    }
    void reports() { compare(); }

    void converts_data() {
        columns();
        agree("conv -d o", R"(cd.wav mis.wav | -o flac cd.wav | -o shn mis.wav | -o tta mis.wav |
            -o ape mis.wav | -o wv mis.wav | -o aiff mis.wav | -o null mis.wav cd.wav | -H cd.wav |
            mis.flac mis2.shn mis3.tta | -o flac cd2.ape | -o "flac ext=flc" cd.wav | -F odd |
            -o "cust ext=flac flac -s -4 -o %f -" cd.wav | -o "flac flac -s -0 -o %f -" cd.wav |
            -a pre_ -z _post cd.wav | -z .x -o flac a.b.wav noext |
            -O never kept.wav cd.wav | -O always kept.wav | cut.wav cd.wav |
            -o flac cut.wav cd.wav | missing.wav cd.wav | -w missing.wav cd.wav |
            -q missing.wav cd.wav | -o flac -- -dash.wav | -P dot cd.wav cd2.wav |
            -P spin cd.wav | -P face cd.wav cd2.wav | -P none cd.wav | one.wav none.wav |
            -o flac one.wav |
            -o flac deep.wav byte.wav unpadded.wav mono.wav dat.wav | -o tta list.wav byte.wav |
            -o shn list.wav wide.wav byte.wav)");
        agree("conv", "-d . cd.wav | cd.wav");
        // Ours drops extensions of any spelling.
        agree("conv -d o", "-F names | -o flac -F names | -z .x -o flac UPPER.WAV",
              u"UPPER\\.WAV\\."_s, u"UPPER."_s);
        // Ours calls it no success when the encoder fails in the end.
        agree("conv -d o", "-o flac none.wav partial.wav", u": OK\n(?=shntool)"_s, u": ERROR\n"_s);
        // Ours tells why.
        agree("conv", "-d missing cd.wav", u"output file --"_s,
              u"output file (cannot be created: No such file or directory) --"_s);
        endsItsLine("conv -d o", "kept.wav cd.wav");
    }
    void converts() { compare(); }

    void movesTrackBreaks_data() {
        columns();
        // Ours names what it fixed like its source, so both are told the name.
        agree("fix -d o -z -fixed", R"(mis.wav mis2.wav mis3.wav cd.wav | mis2.wav | -n mis2.wav |
            -b mis3.wav mis2.wav mis.wav | -f mis.wav mis2.wav mis3.wav cd.wav | cd.wav cd2.wav |
            -u mis.wav mis2.wav mis3.wav cd.wav | -n mis.wav mis2.wav | cd.wav cd2.wav mis.wav |
            -k cd.wav cd2.wav mis.wav mis3.wav | mis.wav dat.wav | mis.wav missing.wav cd.wav |
            mis.wav cut.wav | -n -f mis.wav cd2.wav mis2.wav | -o flac mis.wav mis2.wav |
            mis.flac mis2.wav | wide2.wav list.wav | -q mis.wav mis2.wav | -c mis.wav mis2.wav |
            -P dot mis.wav mis2.wav | -c cd.wav cd2.wav | -c cd.wav |
            -o null mis.wav mis2.wav | -a pre mis.wav mis2.wav)");
        agree("join -d o", R"(mis.wav mis2.wav | -b mis2.wav mis.wav | cd.wav cd2.wav | cd.wav |
            -n mis.wav mis2.wav mis3.wav | -e mis3.wav mis.wav | -a pre -z post cd.wav cd2.wav |
            -a pre mis.wav mis2.wav | -z post cd2.wav cd.wav | mono.wav mono.wav | cd.wav dat.wav |
            byte.wav unpadded.wav | dat.wav dat.flac | cd.wav mono.wav | cd.wav deep.wav |
            -F names | cd.wav missing.wav cd2.wav | -o flac mis.wav mis2.wav | cut.wav cd.wav |
            cd.wav cut.wav | list.wav after.wav | wide2.wav cd2.wav | mis2.shn cd2.ape |
            -O always -a kept cd2.wav mis2.wav)");
        // Ours tells that the channels change places.
        agree("join -d o", "partial.wav cd2.wav", u"(?<=errors:\n)"_s,
              u"shntool [join]: warning: data chunk is not block-aligned, channels of what follows "
              "will be shifted: [partial.wav]\n"_s);
        endsItsLine("join -d o", "-O never -a kept cd.wav cd2.wav");
        agree("pad -d o", R"(mis.wav | -b mis.wav mis2.wav | -e mis3.wav | cd.wav mis2.wav |
            -a x mis.wav | dat.wav mis2.wav | -z post mis2.wav | -a pre -z post mis2.wav |
            wide2.wav | -b wide2.wav | -o flac mis2.shn | missing.wav mis2.wav |
            partial.wav one.wav | cut.wav none.wav)");
    }
    void movesTrackBreaks() { compare(); }

    void splits_data() {
        columns();
        agree("split -d o cd.wav -f", R"(sec | frames | millis | bytes | crlf | zero | down |
            twice | end | beyond | blank | nothing | sixty | eighty | tiny | missing | cue |
            crlf.cue | pregap.cue | late.cue)");
        // Ours tells what it could not read.
        agree("split -d o cd.wav -f", "words", u"format: \\[]"_s, u"format: [soon]"_s);
        agree("split -d o -f", R"(cue -t "%p - %a - %n - %t" cd.wav | cue -t %t -m /-:_ cd.wav |
            cue -t "%n %t" -m ?! cd.wav | pregap.cue -t %n-%p cd.wav | same.cue -t %t cd.wav |
            same.cue -t %n%t -x 2-3 cd.wav | same.cue -t %t -O always cd.wav | sec -t %t cd.wav |
            cue -c 9 -n %03d -t %n cd.wav | sec -e 0:00.500 -u 0:00.10 cd.wav | sec -u 1000 cd.wav |
            sec -e 0:01.10 cd.wav | sec -u 0:03 cd.wav | bytes mis3.tta)");
        agree("split -d o -l", R"(0:01 -n %d cd.wav | 0:01 -x 2-3 cd.wav | 0:01 -x 1,4 cd.wav |
            0:01 -x 3-1 cd.wav | 0:01 -x 7 cd.wav | 0:01 -c 9 cd.wav | 0:01 -c 0 -n %04d cd.wav |
            0:03.10 mis.wav | 300000 -o flac cd.wav | 0:09 cd.wav | 0:01 dat.wav | 50001 dat.wav |
            0:01 missing.wav | 0:01 -a pre -z post cd.wav | 50000 cut.wav |
            20000 -a pre list.wav | 0:02 mis.flac | 0:02 -w cd.wav | 0:02 -q cd.wav |
            9999 byte.wav)");
    }
    void splits() { compare(); }

    void cleans_data() {
        columns();
        agree("strip -d o", oddNames() + "|average.wav");
        // The packaged one says a line of blanks, too.
        agree("strip -d o", "-c -e list.wav", u"shntool \\[strip]:  +\n"_s);
        agree("strip -d o", R"(cd.wav list.wav | -c list.wav after.wav wide2.wav |
            -e list.wav after.wav wide2.wav | missing.wav after.wav | -o flac list.wav | mis.flac |
            -a pre -z post list.wav | -o null list.wav | -q cd.wav list.wav)");
        agree("trim -d o", R"(sil.wav | -b sil.wav silb.wav sile.wav |
            -e sil.wav silb.wav sile.wav | silb.wav sile.wav | cd.wav sil.wav | silent.wav |
            silx.wav | -o flac sil.wav | mis.flac | none.wav missing.wav sil.wav |
            -a pre -z post sil.wav | -b -e sil.wav)");
        agree("gen -d o", R"(-l 0:02 | -l 1000 | -l 0:00.500 | -l 0:00.37 |  | -l soon | -l 0 |
            -l 0:61 | -l 1:2 | -l 1:00.001 -o null | -l 0:01 -o flac -a pre -z post |
            -l 0:01 -a kept -O always)");
        endsItsLine("gen -d o", "-l 0:01 -a kept -O never");
    }
    void cleans() { compare(); }

    // The explanations that follow the first line are each one's own.
    void refusesOptions_data() {
        columns();
        agree("len", "-u yb cd.wav | -Z cd.wav | -u");
        agree("conv", "-o none cd.wav | -P bar cd.wav | -O perhaps cd.wav | -r backwards cd.wav");
        agree("split -w -d o -l 0:02 cd.wav", "-l soon | -x a | -c -1");
        agree("cmp", "-f 8 cd.wav cd.wav | -s -c x cd.wav cd.wav");
        agree("", "nomode cd.wav | hash -d o cd.wav | strip -c -e cd.wav | gen -l 0:01 -a");
    }
    void refusesOptions() {
        QFETCH(QString, command);
        const auto refusal = [&](const QString& program) {
            return outcome(program, QProcess::splitCommand(command))
                .section(u'\n', 0, 3)
                .replace(program, u"shntool"_s);
        };
        QCOMPARE(refusal(ours), refusal(packaged));
    }
};

QTEST_GUILESS_MAIN(ShntoolComparisonTest)
#include "ShntoolComparisonTest.moc"
