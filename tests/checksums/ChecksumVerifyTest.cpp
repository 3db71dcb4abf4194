#include "ChecksumBench.h"
#include "support/Table.h"

#include <QTest>
#include <QTimer>

#include <sys/stat.h>

using namespace quav;
using namespace quav::test;
using Command = ChecksumCommand;

namespace {

/// Bytes: what the process has now, and from now on at most.
class MostMemory {
public:
    MostMemory() {
        QFile forget(u"/proc/self/clear_refs"_s);
        forget.open(QIODevice::WriteOnly);
        forget.write("5");
        forget.close();
        before_ = most();
    }

    qint64 grown() const { return most() - before_; }

private:
    static qint64 most() {
        const QByteArray status = contents(u"/proc/self/status"_s);
        const qsizetype at = status.indexOf("VmHWM:") + 6;
        return status.mid(at, status.indexOf("kB", at) - at).trimmed().toLongLong() * 1024;
    }

    qint64 before_ = 0;
};

} // namespace

class ChecksumVerifyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsAreVerifiedWordForWord_data() {
        columns<QString, QString, bool, QString, QString, QString>("list", "text", "tolerant",
                                                                   "report", "verdicts", "hint");
        const auto add = [](const char* name, const char* list, const QString& text,
                            const QString& report, const char* verdicts, bool tolerant = false,
                            const char* hint = "") {
            row(name, QString::fromLatin1(list), text, tolerant, report,
                QString::fromLatin1(verdicts), QString::fromLatin1(hint));
        };
        const auto addHinted = [&](const char* name, const char* list, const QString& text,
                                   const QString& report, const char* verdicts, const char* hint) {
            add(name, list, text, report, verdicts, false, hint);
        };
        const QString zeros(32, u'0');
        addHinted(
            "MD5", "l.md5",
            u"# c\n{m} *a.wav\n%1 *a.wav\n{m}  a.wav\n{M} *a.wav\n{m} *no/b.wav\n{m} *no.wav\n"_s
                .arg(zeros),
            u"a.wav : OK\na.wav : FAILED\n{m}  a.wav : Invalid checksum format\na.wav : FAILED\n"
            "b.wav : FAILED\nno.wav : FAILED\n"_s,
            "ok failed unreadable failed missing missing",
            "1 entry would match, 1 file could be found and checked");
        add("MD5, tolerant", "l.md5",
            u"{M} *a.wav\n{m}  sub\\x.wav\nMD5 (a.wav) = {m}\n{m} *a.wav\n%1  no.wav\nhello\n"_s
                .arg(zeros),
            u"a.wav : OK (read strictly: FAILED)\nx.wav : OK (read strictly: Invalid checksum "
            "format)\na.wav : OK (read strictly: Invalid checksum format)\na.wav : OK\n"
            "no.wav : FAILED (read strictly: Invalid checksum format)\n"
            "hello : Invalid checksum format\n"_s,
            "ok ok ok ok missing unreadable", true);
        add("md5sum.txt, tolerant", "md5sum.txt", u"{m}  a.wav\n"_s,
            u"md5sum.txt : read as MD5 (read strictly: no list of this kind)\n"
            "a.wav : OK (read strictly: Invalid checksum format)\n"_s,
            "ok", true);
        add("outside, MD5", "sub/l.md5", u"{m} *../a.wav\n{m} */a.wav\n{m} */x.wav\n"_s,
            u"a.wav : OK\na.wav : FAILED\nx.wav : OK\n"_s, "ok missing ok");
        add("itself and a folder, MD5", "l.md5", u"{m} *l.md5\n{m} *sub\n"_s,
            u"l.md5 : FAILED\nsub : FAILED\n"_s, "failed unreadable");
        addHinted("ST5", "l.st5",
                  u";c\n{s}  [shntool]  a.wav\n%1  [shntool]  a.wav\n{s}  [shntool]  sub/x.wav\n"
                  "{s}  [shntool]  no.wav\nhello\n"_s.arg(zeros),
                  u"a.wav : OK\na.wav : did not match shntool md5 file\n"
                  "x.wav : did not match shntool md5 file\n"
                  "no.wav : warning: cannot open non-existent file: [no.wav]no.wav\n"
                  "hello : Invalid checksum format\n"_s,
                  "ok failed failed missing unreadable", "1 entry would match");
        add("ST5, tolerant", "l.st5", u"{s}  [shntool]  sub/x.wav\n{S} [shntool] a.wav\n"_s,
            u"x.wav : OK (read strictly: did not match shntool md5 file)\n"
            "a.wav : OK (read strictly: Invalid checksum format)\n"_s,
            "ok ok", true);
        const QString noSuchFlac =
            u"no.flac: ERROR: reading metadata, status = "
            "\"FLAC__METADATA_CHAIN_STATUS_ERROR_OPENING_FILE\"\n\nThe FLAC file could not be "
            "opened.  Most likely the file does not exist\nor is not readable. : no.flac\n"_s;
        const QString tested = u"\nVerify Flac Files in l.ffp\na.flac: testing, 100% complete\n"
                               "a.flac: ok\nb.flac: testing, 100% complete\nb.flac: ok\n"_s;
        addHinted(
            "FFP", "l.ffp",
            u";c\n\nb.flac:{f}\na.flac : {f} \na.flac:%1\nno.flac:{f}\nsub/c.flac:{f}\nhello\n"_s
                .arg(zeros),
            u"b.flac : OK\na.flac : OK\na.flac : did not match fingerprint file\n"_s + noSuchFlac +
                u"c.flac : did not match fingerprint file\nhello : Invalid checksum format\n"_s +
                tested,
            "ok ok failed missing failed unreadable", "1 entry would match");
        add("FFP, tolerant", "l.ffp", u"a.flac:{F}\nsub\\c.flac:{f}\n"_s,
            u"a.flac : OK (read strictly: did not match fingerprint file)\n"
            "c.flac : OK (read strictly: did not match fingerprint file)\n"
            "\nVerify Flac Files in l.ffp\na.flac: testing, 100% complete\na.flac: ok\n"
            "c.flac: testing, 100% complete\nc.flac: ok\n"_s,
            "ok ok", true);
        add("FFP, digests first", "l.ffp", u"{f} *a.flac\n#1: x\n"_s,
            u"a.flac : OK (read strictly: Invalid checksum format)\n"
            "\nVerify Flac Files in l.ffp\na.flac: testing, 100% complete\na.flac: ok\n"_s,
            "ok", true);
        add("prose, tolerant", "l.ffp", u"Disc 1: 12 tracks\n"_s,
            u"Disc 1: 12 tracks : Invalid checksum format (read strictly: an entry that nothing "
            "can match)\n"_s,
            "unreadable", true);
        add("names of the disk, tolerant", "l.md5",
            u"{m} **a.wav\n{m}\t*a.wav\n{m} *Sub/X.WAV\n{m} *o\u0308.wav\n{m} *dd.wav\n"
            "O\u0308.wav={m}\n"_s,
            u"a.wav : OK (read strictly: FAILED)\n"
            "a.wav : OK (read strictly: Invalid checksum format)\n"
            "x.wav : OK (read strictly: FAILED)\n\u00f6.wav : OK (read strictly: FAILED)\n"
            "dd.wav : FAILED\n\u00d6.wav : OK (read strictly: Invalid checksum format)\n"_s,
            "ok ok ok ok missing ok", true);
        addHinted("names of the disk", "l.md5", u"{m} *A.wav\n{m} *dd.wav\n{m} *o\u0308.wav\n"_s,
                  u"A.wav : FAILED\ndd.wav : FAILED\no\u0308.wav : FAILED\n"_s,
                  "missing missing missing", "2 files could be found and checked");
        add("a comment alone", "l.ffp", u";c\n"_s, QString(), "unreadable");
    }
    void listsAreVerifiedWordForWord() {
        QFETCH(QString, list);
        QFETCH(QString, text);
        QFETCH(QString, report);
        Bench bench;
        const QString a = bench.wav(u"a.wav"_s, {.frames = 3000});
        QVERIFY(QDir(bench.folder.path()).mkdir(u"sub"_s));
        for (const QString& name :
             {u"sub/x.wav"_s, u"\u00f6.wav"_s, u"\u00d6.wav"_s, u"Dd.wav"_s, u"dD.wav"_s}) {
            QVERIFY(QFile::copy(a, bench.path(name)));
        }
        const QString flac = bench.flac(u"a.flac"_s);
        QVERIFY(QFile::copy(flac, bench.path(u"b.flac"_s)));
        QVERIFY(QFile::copy(flac, bench.path(u"sub/c.flac"_s)));
        const QString md5 = QString::fromLatin1(md5Of(a));
        const QString st5 =
            QString::fromLatin1(run(u"shntool"_s, {u"hash"_s, u"-q"_s, a}).output.left(32));
        const QString ffp =
            QString::fromLatin1(run(u"metaflac"_s, {u"--show-md5"_s, flac}).output.trimmed());
        const auto filled = [&](QString with) {
            return with.replace(u"{m}"_s, md5)
                .replace(u"{M}"_s, md5.toUpper())
                .replace(u"{s}"_s, st5)
                .replace(u"{S}"_s, st5.toUpper())
                .replace(u"{f}"_s, ffp)
                .replace(u"{F}"_s, ffp.toUpper());
        };
        bench.written(list, filled(text).toUtf8());
        QFETCH(bool, tolerant);
        bench.checksum.options().set(checksumOptions().acceptOtherSpellings, tolerant);
        const QString first = list.endsWith(u"st5")   ? u"ST5"_s
                              : list.endsWith(u"ffp") ? u"FFP"_s
                                                      : u"MD5"_s;
        QCOMPARE(verify(bench, {bench.path(list)}),
                 u"Verify %1: %2\n"_s.arg(first, QFileInfo(list).fileName()) + filled(report) +
                     u'\n');
        QTEST(words(bench.verdicts), "verdicts");
        QVERIFY(bench.failed.isEmpty());
        const bool leadsAway = list.startsWith(u"sub"_s);
        const QString warnings = bench.workbench.queue().warnings().join(u'\n');
        QCOMPARE(warnings.contains(u"looked up"), leadsAway);
        QTEST(warnings.section(u"(--tolerant), "_s, 1), "hint");
    }

    void sectionsOfATextAreReadEachAsItsOwnKind() {
        Bench bench;
        const QByteArray md5 = md5Of(bench.wav(u"a.wav"_s));
        const QByteArray ffp =
            run(u"metaflac"_s, {u"--show-md5"_s, bench.flac(u"a.flac"_s)}).output;
        bench.written(u"info.txt"_s, "Live\nmd5:\n" + md5 + " *a.wav\nFFP:\n" + ffp.trimmed() +
                                         " a.flac\nSt5:\na.wav=" + md5 + "\n");
        bench.checksum.options().set(checksumOptions().acceptOtherSpellings, true);
        const QString report = verify(bench, {bench.path(u"info.txt"_s)});
        for (const QString& part :
             {u"read as MD5 (read strictly: no list of this kind)\n"
              "info.txt : 4 lines of text passed over\na.wav : OK\n"_s,
              u"read as FFP (read strictly: no list of this kind)\na.flac : OK "_s,
              u"read as ST5 (read strictly: no list of this kind)\na.wav : did not match"_s}) {
            QVERIFY2(report.contains(part), qPrintable(part + u"\nis not in\n"_s + report));
        }
        QCOMPARE(VerdictCounts(bench.verdicts).ok, 2);
        QCOMPARE(bench.verdicts.size(), 3);
    }

    void aWrongCountOfSamplesFailsWhateverTheToolSays() {
        Bench bench;
        constexpr quint64 frames = 30011;
        constexpr int bits = 36;
        const QString good = bench.flac(u"good.flac"_s, {.frames = frames});
        const QByteArray bytes = contents(good);
        const auto withTotal = [&](const QString& name, quint64 total) {
            constexpr qsizetype lastOfTotal = 25;
            QByteArray changed = bytes;
            for (qsizetype i = 0; i < 5; ++i) {
                const quint64 kept = i == 4 ? quint64(bytes[lastOfTotal - i]) & 0xf0U : 0;
                changed[lastOfTotal - i] =
                    char(kept | (total >> (8 * i) & (i == 4 ? 0xfU : 0xffU)));
            }
            return bench.written(name, changed);
        };
        QCOMPARE(contents(withTotal(u"same.flac"_s, frames)), bytes);
        QStringList files{good, withTotal(u"unset.flac"_s, 0)};
        for (int bit = 0; bit < bits; ++bit) {
            files << withTotal(u"bit%1.flac"_s.arg(bit), frames ^ (quint64(1) << bit));
        }
        addFiles(bench.checksum, files);
        bench.run(bench.checksum);
        const QString report = bench.reports.join(u'\n');
        QCOMPARE(bench.verdicts.size(), files.size());
        QVERIFY(report.contains(u"good.flac: ok"_s) && report.contains(u"unset.flac: "_s));
        QHash<QString, Verdict> verdicts;
        for (const Verdict& verdict : bench.verdicts) {
            verdicts.insert(verdict.file, verdict);
        }
        QCOMPARE(words({verdicts[files[0]], verdicts[files[1]]}), u"ok ok");
        for (int bit = 0; bit < bits; ++bit) {
            const Verdict& verdict = verdicts[files[bit + 2]];
            QVERIFY2(verdict.kind == Verdict::Kind::Failed, qPrintable(verdict.file));
            // flac itself has no word about a total that is too small.
            const bool isTooSmall = (frames >> bit & 1) != 0;
            QCOMPARE(report.contains(u"\nbit%1.flac: ok\n"_s.arg(bit)), isTooSmall);
            QCOMPARE(verdict.note.startsWith(u"its beginning tells of "_s), isTooSmall);
        }
        QCOMPARE(bench.failed.size(), bits);

        const QString fingerprint =
            QString::fromLatin1(run(u"metaflac"_s, {u"--show-md5"_s, good}).output);
        bench.written(u"l.ffp"_s, (u"good.flac:%1bit3.flac:%1"_s.arg(fingerprint)).toUtf8());
        verify(bench, {bench.path(u"l.ffp"_s)});
        QCOMPARE(words(bench.verdicts), u"ok failed");
        QCOMPARE(bench.verdicts[1].note,
                 u"its beginning tells of 30,003 samples, and it has 30,011");
    }

    void whatIsNoListIsToldAndHarmless_data() {
        columns<QString, QString>("kind", "says");
        row("gigabyte.md5", u"gigabyte.md5"_s, u"larger than any list"_s);
        row("junk.md5", u"junk.md5"_s, u"not in UTF-8"_s);
        row("junk.ffp", u"junk.ffp"_s, u"not in UTF-8"_s);
        row("breaks.md5", u"breaks.md5"_s, u"more lines than any list"_s);
        row("empty.st5", u"empty.st5"_s, u"names no file"_s);
        row("pipe.md5", u"pipe.md5"_s, u"it is no file"_s);
        row("gone.ffp.txt", u"gone.ffp.txt"_s, u"could not be read"_s);
    }
    void whatIsNoListIsToldAndHarmless() {
        QFETCH(QString, kind);
        QFETCH(QString, says);
        Bench bench;
        const QString list =
            bench.written(kind, kind.startsWith(u"junk") ? "\xff\xfe\0\1 *\n\x80" : "");
        if (kind.startsWith(u"breaks")) {
            bench.written(kind, u"\u2028"_s.repeated(500'001).toUtf8());
        }
        if (kind.startsWith(u"gigabyte")) {
            QVERIFY(QFile::resize(list, qint64(1) << 30));
        }
        addFiles(bench.checksum, {list});
        if (kind.startsWith(u"gone") || kind.startsWith(u"pipe")) {
            QFile::remove(list);
        }
        if (kind.startsWith(u"pipe")) {
            QCOMPARE(::mkfifo(QFile::encodeName(list).constData(), S_IRUSR | S_IWUSR), 0);
        }
        QVERIFY(verify(bench, {}).startsWith(u"Verify "_s));
        QCOMPARE(bench.reports.first().count(u'\n'), 2);
        QCOMPARE(words(bench.verdicts), u"unreadable");
        QVERIFY2(bench.verdicts.front().note.contains(says),
                 qPrintable(bench.verdicts.front().note));
        QCOMPARE(bench.failed.size(), kind.contains(u"ffp") ? 1 : 0);
    }

    void linksThatLeadBackCostNoMemory() {
        Bench bench;
        for (int i = 0; i < 2000; ++i) {
            bench.written(u"a long name that a list does not have, number %1"_s.arg(i), {});
        }
        QFile::link(u"."_s, bench.path(u"a"_s));
        QFile::link(u"."_s, bench.path(u"b"_s));
        QByteArray list;
        constexpr int levels = 8;
        for (int spelling = 0; spelling < 1 << levels; ++spelling) {
            list += QByteArray(32, '0') + " *";
            for (int level = 0; level < levels; ++level) {
                list += (spelling >> level) % 2 == 0 ? "a/" : "b/";
            }
            list += "gone\n";
        }
        bench.checksum.options().set(checksumOptions().acceptOtherSpellings, true);
        const MostMemory memory;
        verify(bench, {bench.written(u"l.md5"_s, list)});
        QCOMPARE(bench.verdicts.size(), size_t(1) << levels);
        constexpr qint64 most = qint64(40) << 20; // of some 130 MB for every spelling's own names
        QVERIFY2(memory.grown() < most, qPrintable(QString::number(memory.grown())));
    }

    void aListThatIsNotInUtf8SaysSo() {
        Bench bench;
        const QString file = bench.written(u"Größe"_s, "x");
        const QString list = bench.written(u"l.md5"_s, md5Of(file) + " *Gr\xf6\xdf"
                                                                     "e\n");
        verify(bench, {list});
        QVERIFY(bench.verdicts.front().note.contains(u"not in UTF-8"));
        bench.checksum.options().set(checksumOptions().acceptOtherSpellings, true);
        QCOMPARE(verify(bench, {list}),
                 u"Verify MD5: l.md5\nl.md5 : read although it is not in UTF-8 (read strictly: "
                 "empty)\nGröße : OK\n\n");
    }

    void theWholeNameComesBeforeAPartOfIt() {
        Bench bench;
        bench.written(u"12"_s, "no music");
        const QString flac = bench.flac(u"12:00.flac"_s);
        const QByteArray ffp = run(u"metaflac"_s, {u"--show-md5"_s, flac}).output;
        bench.checksum.options().set(checksumOptions().acceptOtherSpellings, true);
        QVERIFY(verify(bench, {bench.written(u"a.ffp"_s, "12:00.flac:" + ffp)})
                    .contains(u"\n12:00.flac : OK (read strictly: "_s));
        QCOMPARE(words(bench.verdicts), u"ok");
    }

    void pipesUnderTheNamesOfFilesKeepNobodyWaiting() {
        Bench bench;
        const QString pipe = bench.path(u"p.flac"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), S_IRUSR | S_IWUSR), 0);
        const QByteArray digest(32, '0');
        verify(bench, {bench.written(u"a.ffp"_s, "p.flac:" + digest),
                       bench.written(u"b.md5"_s, digest + " *p.flac")});
        QCOMPARE(words(bench.verdicts), u"unreadable unreadable");
        bench.checksum.options().set(checksumOptions().command, Command::Test);
        bench.checksum.addFile(pipe);
        bench.run(bench.checksum);
        QCOMPARE(words(bench.verdicts), u"unreadable");
        QCOMPARE(bench.failed, QStringList{u"Verify FLAC"_s});
    }

    void tenThousandEntriesDoNotStallTheLoop() {
        Bench bench;
        const QString file = bench.written(u"a"_s, "x");
        const QByteArray line = md5Of(file) + " *a\n";
        bench.checksum.options().set(checksumOptions().command, Command::Verify);
        addFiles(bench.checksum, {bench.written(u"l.md5"_s, line.repeated(10000))});
        // Were the entries checked on this thread, the loop would not turn before the end.
        int turns = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, this, [&] { turns += bench.reports.isEmpty(); });
        timer.start(0);
        bench.run(bench.checksum);
        QVERIFY(turns > 10);
        QCOMPARE(VerdictCounts(bench.verdicts).ok, 10000);
    }
};

QTEST_GUILESS_MAIN(ChecksumVerifyTest)
#include "ChecksumVerifyTest.moc"
