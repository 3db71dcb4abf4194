#include "audio/pcm/Failure.h"
#include "audio/pcm/OrderedWork.h"
#include "audio/pcm/OutputFile.h"
#include "audio/pcm/PcmReader.h"
#include "audio/pcm/Samples.h"
#include "audio/pcm/WavHeader.h"
#include "support/AudioFixtures.h"
#include "support/Table.h"

#include <QCryptographicHash>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <numeric>
#include <stdexcept>

using namespace quav;
using namespace Qt::StringLiterals;
using quav::test::contents;
using quav::test::row;

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Everything that a reader gives of an input.
struct Parts {
    Bytes header, samples, trailer;
    QByteArray signedMd5; // of the samples as signed little-endian numbers

    Bytes whole() const {
        Bytes all = header;
        all.insert(all.end(), samples.begin(), samples.end());
        all.insert(all.end(), trailer.begin(), trailer.end());
        return all;
    }
};

/// Reads in pieces that fit nothing.
Parts readAll(pcm::InputFile& input) {
    pcm::PcmReader reader(input);
    Parts parts{reader.header(), {}, {}, {}};
    Bytes piece(reader.format().blockAlign() * 1013);
    while (const std::size_t count = reader.readSamples(piece)) {
        parts.samples.insert(parts.samples.end(), piece.begin(), piece.begin() + long(count));
    }
    while (const std::size_t count = reader.readTrailer(std::span(piece).first(7))) {
        parts.trailer.insert(parts.trailer.end(), piece.begin(), piece.begin() + long(count));
    }
    pcm::PcmFormat plain = reader.format();
    std::vector<std::int32_t> numbers(parts.samples.size() / plain.bytesPerSample);
    pcm::unpackSamples(plain, parts.samples, numbers);
    plain.bigEndian = plain.isUnsigned = false;
    Bytes packed(parts.samples.size());
    pcm::packSamples(plain, numbers, packed);
    parts.signedMd5 = QCryptographicHash::hash(
        QByteArrayView(packed.data(), qsizetype(packed.size())), QCryptographicHash::Md5);
    return parts;
}

QByteArray bytes(const Bytes& from) {
    return {reinterpret_cast<const char*>(from.data()), qsizetype(from.size())};
}

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

/// The samples of a file as another program reads them.
QByteArray judged(const QString& path, const QString& codec) {
    const test::Ran ran = test::run(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-i"_s, path, u"-c:a"_s,
                                                  codec, u"-f"_s, codec.mid(4), u"-"_s});
    return QCryptographicHash::hash(ran.output, QCryptographicHash::Md5);
}

} // namespace

class PcmTest : public QObject {
    Q_OBJECT

    QTemporaryDir folder_;
    QString path(const QString& name) const { return folder_.filePath(name); }
    QByteArray failureOf(const auto& work) const {
        try {
            work();
        } catch (const pcm::Failure& failure) {
            return failure.what();
        }
        return {};
    }

private Q_SLOTS:
    void readsWhatAnotherProgramWrote_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("codec");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("asPlain");
        const QStringList none;
        row("unsigned 8 bit", u"a.wav"_s, u"pcm_u8"_s, none, u"pcm_s8"_s);
        row("16 bit", u"b.wav"_s, u"pcm_s16le"_s, none, u"pcm_s16le"_s);
        row("24 bit, extensible", u"c.wav"_s, u"pcm_s24le"_s, none, u"pcm_s24le"_s);
        row("32 bit, six channels", u"d.wav"_s, u"pcm_s32le"_s, QStringList{u"-ac"_s, u"6"_s},
            u"pcm_s32le"_s);
        row("RF64", u"e.wav"_s, u"pcm_s16le"_s, QStringList{u"-rf64"_s, u"always"_s},
            u"pcm_s16le"_s);
        row("AIFF", u"f.aiff"_s, u"pcm_s16be"_s, none, u"pcm_s16le"_s);
        row("AIFF of 24 bit", u"g.aiff"_s, u"pcm_s24be"_s, none, u"pcm_s24le"_s);
        row("AIFF of 8 bit", u"h.aiff"_s, u"pcm_s8"_s, none, u"pcm_s8"_s);
        row("AIFF-C, little-endian", u"i.aiff"_s, u"pcm_s16le"_s, none, u"pcm_s16le"_s);
    }
    void readsWhatAnotherProgramWrote() {
        QFETCH(QString, name);
        QFETCH(QString, codec);
        QFETCH(QStringList, options);
        QFETCH(QString, asPlain);
        QVERIFY(test::writeWav(path(u"source.wav"_s), {.frames = 30001, .bits = 24}));
        const test::Ran made =
            test::run(u"ffmpeg"_s, QStringList{u"-v"_s, u"error"_s, u"-y"_s, u"-i"_s,
                                               path(u"source.wav"_s), u"-c:a"_s, codec} +
                                       options + QStringList{path(name)});
        QCOMPARE(made.status, 0);

        pcm::InputFile input = pcm::InputFile::open(path(name).toStdString());
        const Parts parts = readAll(input);
        QCOMPARE(bytes(parts.whole()), contents(path(name)));
        QCOMPARE(parts.signedMd5, judged(path(name), asPlain));
    }

    void readsWhatAPipeRecorderLeft_data() {
        QTest::addColumn<QByteArray>("size");
        row("all ones", QByteArray("ffffffff"));
        row("2 GiB", QByteArray("00000080"));
        row("a block less than 2 GiB", QByteArray("fcffff7f"));
    }
    void readsWhatAPipeRecorderLeft() {
        // The length is not in the header; an incomplete block ends the input.
        QFETCH(QByteArray, size);
        const QByteArray file = QByteArray::fromHex("52494646ffffffff57415645666d7420100000000100"
                                                    "020044ac000010b102000400100064617461" +
                                                    size + "0102030405060708090a");
        write(path(u"stream.wav"_s), file);
        std::array<int, 2> ends{};
        QCOMPARE(::pipe2(ends.data(), O_CLOEXEC), 0);
        QCOMPARE(::write(ends[1], file.constData(), size_t(file.size())), file.size());
        ::close(ends[1]);
        pcm::InputFile pipe(pcm::UniqueFd{ends[0]}, "pipe");
        QCOMPARE(bytes(readAll(pipe).whole()), file);

        pcm::InputFile regular = pcm::InputFile::open(path(u"stream.wav"_s).toStdString());
        const Parts parts = readAll(regular);
        QCOMPARE(parts.samples.size(), size_t(8));
        QCOMPARE(bytes(parts.trailer), file.right(2));
    }

    void refusesWhatItCannotRead_data() {
        QTest::addColumn<int>("at");
        QTest::addColumn<QByteArray>("patch");
        QTest::addColumn<QByteArray>("says");
        row("no audio file", 0, QByteArray("ABCD"), QByteArray("is no WAV or AIFF file"));
        row("floating point", 20, QByteArray("\3"), QByteArray("floating-point"));
        row("another codec", 20, QByteArray("\x55"), QByteArray("compressed"));
        row("no channels", 22, QByteArray("\0", 1), QByteArray("contradicts itself"));
        row("64 bit", 34, QByteArray("\x40"), QByteArray("contradicts itself"));
        row("a chunk of 4 GiB", 16, QByteArray("\xff\xff\xff\x7f"), QByteArray("16 MiB"));
        row("samples cut short", 41, QByteArray("\xff"), QByteArray("ends before the samples"));
        row("no format chunk", 12, QByteArray("junk"), QByteArray("does not say how"));
    }
    void refusesWhatItCannotRead() {
        QFETCH(int, at);
        QFETCH(QByteArray, patch);
        QFETCH(QByteArray, says);
        QVERIFY(test::writeWav(path(u"bad.wav"_s), {.frames = 100}));
        write(path(u"bad.wav"_s), contents(path(u"bad.wav"_s)).replace(at, patch.size(), patch));
        pcm::InputFile input = pcm::InputFile::open(path(u"bad.wav"_s).toStdString());
        const QByteArray text = failureOf([&] { readAll(input); });
        QVERIFY2(text.contains(says) && text.contains("bad.wav"), text.constData());
    }

    void writesHeadersThatOthersRead() {
        for (unsigned channels = 1; channels <= 8; ++channels) {
            for (const unsigned width : {1U, 2U, 3U}) {
                const pcm::PcmFormat format{channels, width * 8, width,     48000,
                                            0,        false,     width == 1};
                constexpr std::uint64_t blocks = 4801;
                Bytes file = pcm::wavHeader(format, blocks);
                QCOMPARE(file.size(), channels > 2 ? size_t(68) : size_t(44));
                Bytes samples(blocks * format.blockAlign());
                std::iota(samples.begin(), samples.end(), std::uint8_t(0));
                file.insert(file.end(), samples.begin(), samples.end());
                file.resize(file.size() + pcm::wavPadding(format, blocks));
                write(path(u"header.wav"_s), bytes(file));
                QVERIFY(judged(path(u"header.wav"_s), width == 1   ? u"pcm_u8"_s
                                                      : width == 2 ? u"pcm_s16le"_s
                                                                   : u"pcm_s24le"_s) ==
                        QCryptographicHash::hash(bytes(samples), QCryptographicHash::Md5));
                QCOMPARE(
                    test::run(u"flac"_s, {u"-sfo"_s, path(u"header.flac"_s), path(u"header.wav"_s)})
                        .status,
                    0);
            }
        }
    }

    void outputsAppearWholeOrNotAtAll() {
        const std::string name = path(u"Größe [1] 'a'.out"_s).toStdString();
        const QString shown = QString::fromStdString(name);
        const Bytes content(300000, 7);
        const QStringList before = QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden);
        {
            pcm::OutputFile abandoned(name);
            abandoned.write(content);
            abandoned.flush();
        }
        QCOMPARE(QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden), before);

        write(shown, {}); // an empty file is there to be filled
        QVERIFY(QFile::link(shown, path(u"link"_s)));
        pcm::OutputFile output(path(u"link"_s).toStdString());
        output.write(content);
        output.writeAt(1, Bytes{1, 2});
        QCOMPARE(QFileInfo(shown).size(), 0);
        output.commit();
        QCOMPARE(contents(shown), QByteArray("\7\1\2") + QByteArray(299997, '\7'));
        QVERIFY(QFileInfo(path(u"link"_s)).isSymLink());

        QVERIFY(failureOf([&] { pcm::OutputFile again(name); }).contains("not written over"));
        QVERIFY(failureOf([&] { pcm::OutputFile none("/nowhere/x"); }).contains("/nowhere/x"));
        QVERIFY(failureOf([&] { pcm::OutputFile full("/dev/full"); }).contains("is a device"));
    }

    void anOutputIsNotLeftHalf_data() {
        QTest::addColumn<bool>("named"); // as on file systems that know no nameless files
        row("nameless", false);
#ifndef __SANITIZE_THREAD__ // it gives a forked process no signal that has a handler
        row("named", true);
#endif
    }
    void anOutputIsNotLeftHalf() {
        QFETCH(bool, named);
        using Until = pcm::OutputFile::Until;
        const Until until = named ? Until::Named : Until::Nameless;
        const QDir folder(QDir(folder_.path()).filePath(QString::number(named)));
        folder.mkpath(u"."_s);
        const auto files = [&] { return folder.entryList(QDir::Files | QDir::Hidden); };
        const std::string name = folder.filePath(u"out"_s).toStdString();
        const pid_t child = ::fork();
        if (child == 0) {
            ::signal(SIGTERM, SIG_DFL); // the test program has a handler of its own
            pcm::OutputFile output(name, until);
            output.write(Bytes(100, 7));
            output.flush();
            ::raise(SIGTERM);
            ::_exit(1);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
        QCOMPARE(files(), QStringList());

        // What an earlier process of this number has left behind is nobody's business.
        const QString foreign = u".quav-%1-0"_s.arg(::getpid());
        write(folder.filePath(foreign), "x");
        { pcm::OutputFile(name, until).write(Bytes(100, 7)); }
        QCOMPARE(files(), QStringList(foreign));
        write(QString::fromStdString(name), {}); // empty: to be replaced
        QCOMPARE(::chmod(name.c_str(), 0600), 0);
        pcm::OutputFile output(name, until);
        output.write(Bytes(100, 7));
        output.commit();
        QCOMPARE(contents(QString::fromStdString(name)), QByteArray(100, '\7'));
        QCOMPARE(QFile::permissions(QString::fromStdString(name)) & QFile::ReadOther,
                 QFile::Permissions());
        QCOMPARE(files(), QStringList({foreign, u"out"_s}));

        QVERIFY(QFile::link(u"nowhere"_s, folder.filePath(u"link"_s)));
        QVERIFY(failureOf([&] {
                    pcm::OutputFile(folder.filePath(u"link"_s).toStdString(), until);
                }).contains("not written over"));
    }

    void workSideBySideKeepsTheOrder() {
        for (const std::size_t jobs : {1U, 2U, 7U}) {
            int next = 0;
            std::vector<int> delivered;
            pcm::inOrder<int>(
                jobs, [&](int& piece) { return (piece = next++) < 500; },
                [](int& piece) { piece *= 2; }, [&](int& piece) { delivered.push_back(piece); });
            QCOMPARE(delivered.size(), size_t(500));
            for (int i = 0; i < 500; ++i) {
                QCOMPARE(delivered[size_t(i)], 2 * i);
            }
            for (const int failing : {0, 1, 2}) {
                const auto fail = [&](int step, int piece) {
                    if (step == failing && piece >= 100) {
                        throw std::runtime_error("no");
                    }
                };
                next = 0;
                QVERIFY_EXCEPTION_THROWN(pcm::inOrder<int>(
                                             jobs,
                                             [&](int& piece) {
                                                 fail(0, piece = next++);
                                                 return true;
                                             },
                                             [&](int& piece) { fail(1, piece); },
                                             [&](int& piece) { fail(2, piece); }),
                                         std::runtime_error);
            }
        }
    }
};

QTEST_GUILESS_MAIN(PcmTest)
#include "PcmTest.moc"
