#include "checksums/ChecksumList.h"

#include "checksums/CreateMD5Task.h"
#include "checksums/TestLog.h"
#include "engine/ToolOutput.h"
#include "support/Table.h"

#include <QTest>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;
using checksumlist::Reading;

namespace {

const QString digest = u"0123456789abcdef0123456789abcdef"_s;

/// The kept lines: "name=digest", or the text in brackets of one that is no entry.
QString kept(const checksumlist::List& list) {
    QStringList lines;
    for (const checksumlist::Line& line : list.lines) {
        lines << (line.entry ? line.entry->name + u'=' + line.entry->digest
                             : u'[' + line.text + u']');
    }
    return lines.join(u'|').replace(digest, u"@"_s);
}

} // namespace

class ChecksumListTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsAreReadStrictlyAndTolerantly_data() {
        columns<ChecksumKind, QByteArray, QString, QString>("kind", "text", "strictly",
                                                            "tolerantly");
        const auto add = [](const char* name, ChecksumKind kind, const char* text,
                            const char* strictly, const char* tolerantly = nullptr) {
            const QString strict = QString::fromUtf8(strictly);
            row(name, kind, QByteArray(text).replace("@", digest.toUtf8()), strict,
                tolerantly ? QString::fromUtf8(tolerantly) : strict);
        };
        using enum ChecksumKind;
        add("ours", Md5, "#MD5 of\n\n@ *a b.flac\n@ */c/d.wav\n", "a b.flac=@|/c/d.wav=@");
        add("blanks and comments", Md5, "; x\n  @ *a \n\n#y\r\n@ *b\r\n", "a=@|b=@");
        add("an indented comment", Md5, " #x\n@ *a", "[#x]|a=@", "a=@");
        add("two blanks", Md5, "@  a.flac\n", "[@  a.flac]", "a.flac=@");
        add("tab, one blank", Md5, "@\ta\n@ b", "[@\ta]|[@ b]", "a=@|b=@");
        add("BSD", Md5, "MD5 (a (1).flac) = @\n", "[MD5 (a (1).flac) = @]", "a (1).flac=@");
        add("byte-order mark", Md5,
            "\xef\xbb\xbf"
            "@ *a",
            "a=@");
        add("upper case", Md5, "0123456789ABCDEF0123456789ABCDEF *a",
            "a=0123456789ABCDEF0123456789ABCDEF", "a=@");
        add("backslashes", Md5, "@ *c\\d.wav", "c\\d.wav=@", "c/d.wav=@");
        add("escaped", Md5, "\\@ *a\\\\b\\nc", "a\\\\b\\nc=\\@", "a\\b\nc=@");
        add("Windows-1252", Md5, "@ *Gr\xf6\xdf\x85\x80\x81", "", "Größ…€\u0081=@");
        add("no digest", Md5, "hello\nworld *x", "[hello]|x=world", "[hello]|[world *x]");
        add("tab and asterisk", Md5, "@\t*a", "[@\t*a]", "a=@");
        add("two asterisks", Md5, "@ **a", "*a=@");
        add("name first", Md5, "a b \t@\nc=d = @\na @", "[a b \t@]|[c=d = @]|[a @]",
            "a b=@|c=d=@|[a @]");
        add("a name with a hash sign", Md5, "#1 a.wav=@\n# x", "", "#1 a.wav=@");
        add("ours, ST5", St5, ";x\n\n@  [shntool]  a.wav\n@  [shntool]  b c.wav",
            "a.wav=@|b c.wav=@");
        add("other blanks, ST5", St5, "@ [shntool] a\n@ *[shntool] b\n#x",
            "[@ [shntool] a]|[@ *[shntool] b]|[#x]", "a=@|b=@");
        add("MD5 among ST5", St5, "MD5 (a) = @", "[MD5 (a) = @]");
        add("no marker, ST5", St5, "@ *a", "[@ *a]", "a=@");
        add("ours, FFP", Ffp, ";x\n\na.flac:@\n b.flac : @ \n", "a.flac=@|b.flac=@");
        add("colon in the name", Ffp, "12:00.flac:@", "12=00.flac", "12:00.flac=@");
        add("no colon", Ffp, "hello", "[hello]");
        add("a name with a hash sign, FFP", Ffp, "#1.flac:@\n#x: y", "#1.flac=@|#x=y", "#1.flac=@");
        add("prose with a colon", Ffp, "Disc 1: 12 tracks", "Disc 1=12 tracks",
            "[Disc 1: 12 tracks]");
        add("digest first, FFP", Ffp, "@ *a.flac", "[@ *a.flac]", "a.flac=@");
        add("upper case, FFP", Ffp, "a:0123456789ABCDEF0123456789ABCDEF",
            "a=0123456789ABCDEF0123456789ABCDEF", "a=@");
    }
    void listsAreReadStrictlyAndTolerantly() {
        QFETCH(ChecksumKind, kind);
        QFETCH(QByteArray, text);
        const auto readAs = [&](Reading reading) {
            return kept(checksumlist::read(kind, checksumlist::decoded(text, reading), reading,
                                           {kind, true, {kind}}));
        };
        QTEST(readAs(Reading::Strict), "strictly");
        QTEST(readAs(Reading::Tolerant), "tolerantly");
    }

    void encodingsAreToldByTheirMarks() {
        const QByteArray utf16("\xff\xfe"
                               "@\0 \0*\0a\0",
                               10);
        QCOMPARE(checksumlist::decoded(utf16, Reading::Tolerant), u"@ *a");
        QCOMPARE(checksumlist::decoded(utf16, Reading::Strict), QString());
    }

    void theKindIsInTheNameOrTheContent_data() {
        columns<QString, QString, QString, QString>("name", "text", "byName", "byContent");
        row("md5", u"a/x.Md5"_s, u"@ *a"_s, u"MD5"_s, u"MD5:a=@"_s);
        row("st5", u"x.st5"_s, u"\n;c\n@  [shntool]  a"_s, u"ST5"_s, u"ST5:a=@"_s);
        row("ffp", u"x.ffp"_s, u"a:@"_s, u"FFP"_s, u"FFP:a=@"_s);
        row("ffp.txt", u"x.FFP.txt"_s, u"hello"_s, u"FFP"_s, u"FFP:[hello]"_s);
        row("md5sum.txt", u"md5sum.txt"_s, u"# x\n@  a"_s, QString(), u"MD5:a=@"_s);
        row("MD5SUMS", u"a/MD5SUMS"_s, u"@ *a"_s, QString(), u"MD5:a=@"_s);
        row("ST5 in disguise", u"x.md5"_s, u"@  [shntool]  a"_s, u"MD5"_s, u"ST5:a=@"_s);
        row("other", u"ffp.txt"_s, QString(), QString(), QString());
        row("digests first in .ffp", u"x.ffp"_s, u"# md5\n@ *a"_s, u"FFP"_s, u"FFP:a=@"_s);
        row("a name that speaks", u"my_ffp.txt"_s, u"@ *a"_s, QString(), u"FFP:a=@"_s);
        row("sections", u"x.txt"_s,
            u"Live at 12:30\n\nMD5:\n@ *a\n@  b\n\nFlac fingerprint md5s\n@ *a\nc:@\n\n; st5\n"
            "@ d\n@  [shntool]  e\n01234567890123456 *f\n"_s,
            QString(), u"MD5:a=@|b=@|[01234567890123456 *f] FFP:a=@|c=@ ST5:d=@|e=@"_s);
        row("sections of a list", u"x.md5"_s, u"@ *a\nffp:\nb:@\n@ c"_s, u"MD5"_s,
            u"MD5:a=@|[ffp:]|c=@ FFP:b=@"_s);
    }
    void theKindIsInTheNameOrTheContent() {
        QFETCH(QString, name);
        QFETCH(QString, text);
        text.replace(u"@"_s, digest);
        const auto title = [](std::optional<ChecksumKind> kind) {
            return kind ? checksumfiles::title(*kind) : QString();
        };
        QTEST(title(checksumlist::kindByName(name)), "byName");
        const checksumlist::Kinds kinds = checksumlist::kindsIn(text, name);
        QStringList titles;
        for (const ChecksumKind kind : kinds.all) {
            titles << checksumfiles::title(kind) + u':' +
                          kept(checksumlist::read(kind, text, Reading::Tolerant, kinds));
        }
        QTEST(titles.join(u' '), "byContent");
    }

    void namesCountFromTheListsFolderWhenFilesLieApart_data() {
        columns<QString, QString, QString>("file", "folder", "name");
        row("in the folder", u"/a/b/x.wav"_s, u"/a/b"_s, u"x.wav"_s);
        row("below", u"/a/b/c/d.flac"_s, u"/a/b"_s, u"/c/d.flac"_s);
        row("far below", u"/a/b/c/d/e"_s, u"/a/b"_s, u"/c/d/e"_s);
        row("above", u"/a/x"_s, u"/a/b"_s, u"x"_s);
        row("beside, with a like name", u"/a/bc/x"_s, u"/a/b"_s, u"x"_s);
        row("below the root", u"/a/b"_s, u"/"_s, u"/a/b"_s);
    }
    void namesCountFromTheListsFolderWhenFilesLieApart() {
        QFETCH(QString, file);
        QFETCH(QString, folder);
        QTEST(CreateMD5Task::nameFromFolder(file, folder), "name");
    }

    void namesThatNoListCanHoldAreKnown_data() {
        columns<QString, QString>("name", "kinds");
        row("plain", u"d1t01 it's [x] %s (ü).flac"_s, u"MD5 ST5 FFP"_s);
        row("colon", u"12:00.flac"_s, u"MD5 ST5"_s);
        row("comment", u";a.flac"_s, u"MD5 ST5"_s);
        row("separator", u"x *y.flac"_s, u"ST5 FFP"_s);
        row("blank at the end", u"a.flac "_s, QString());
        row("line break", u"a\nb"_s, QString());
        row("line separator", u"a\u2028b"_s, QString());
    }
    void namesThatNoListCanHoldAreKnown() {
        QFETCH(QString, name);
        QStringList kinds;
        for (const ChecksumKind kind : {ChecksumKind::Md5, ChecksumKind::St5, ChecksumKind::Ffp}) {
            if (checksumlist::isReadBack(kind, name)) {
                kinds << checksumfiles::title(kind);
            }
        }
        QTEST(kinds.join(u' '), "kinds");
    }

    void shntoolsPiecesAreRead_data() {
        columns<QString, QString>("piece", "percentAndName");
        row("first", u"Hashing [a.wav] (0:00.08) :   0% "_s, u"0 a.wav"_s);
        row("update", u" 23% "_s, u"23"_s);
        row("end", u"100% OK\n"_s, u"100"_s);
        row("a name with a percentage", u"Hashing [100% live [x] (y).wav] (0:10.00) :   7% "_s,
            u"7 100% live [x] (y).wav"_s);
        row("digest", u"542171de1090a58678571a42179efdb0  [shntool]  50% a.wav\n"_s, QString());
    }
    void shntoolsPiecesAreRead() {
        QFETCH(QString, piece);
        const tooloutput::HashPiece read = tooloutput::hashPiece(piece);
        QStringList parts;
        if (read.percent) {
            parts << QString::number(*read.percent);
        }
        if (!read.fileName.isEmpty()) {
            parts << read.fileName;
        }
        QTEST(parts.join(u' '), "percentAndName");
    }

    void aReportKeepsWhatFollowsTheLastProgress() {
        TestLog log;
        log.add(u"one"_s);
        log.add(u"two"_s);
        QCOMPARE(log.text().text(), u"one\ntwo\n");
        log.add(u"a: testing, 3% complete"_s);
        log.add(u"a: ok"_s);
        QCOMPARE(log.text().text(), u"a: testing, 3% complete\na: ok\n");
        QCOMPARE(tooloutput::fromLastApeProgress(
                     u"\rProgress: 1.0% (x)\rProgress: 9.0% (y)\nfine"_s, u"a.ape"_s),
                 u"a.ape\nProgress: 9.0% (y)\nfine\n");
    }
};

QTEST_GUILESS_MAIN(ChecksumListTest)
#include "ChecksumListTest.moc"
