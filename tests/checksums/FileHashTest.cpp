#include "checksums/FileHash.h"

#include "checksums/MD5Helper.h"
#include "platform/OrderedWork.h"
#include "support/AudioFixtures.h"
#include "support/Table.h"

#include <QCryptographicHash>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

QByteArray randomBytes(qsizetype size, unsigned seed) {
    std::minstd_rand random(seed + 1);
    QByteArray bytes(size, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random() >> 8); });
    return bytes;
}

QString written(const QTemporaryDir& folder, const QString& name, const QByteArray& bytes) {
    QFile file(folder.filePath(name));
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    return file.fileName();
}

/// The digests of many files in the order in which they were told, an error as its number.
QStringList digestsOf(const QStringList& paths, md5lanes::Kernel kernel) {
    QStringList digests;
    FileHash::md5HashesOfFilesAtPaths(
        paths,
        [&](qsizetype index, const FileHash::Digest& digest) {
            // An index out of order would put its digest in the wrong place.
            digests << (index == digests.size()
                            ? digest.value_or(QString::number(digest ? 0 : digest.error().code))
                            : u"out of order"_s);
        },
        [](double /*share*/) { return true; }, kernel);
    return digests;
}

/// What a program of the system says of the files: the first word of each line.
QStringList wordsOf(const QString& program, const QStringList& paths) {
    QStringList words;
    const QByteArray output = run(program, QStringList(u"--"_s) + paths).output;
    for (const QByteArray& line : output.split('\n')) {
        // A backslash in front says that the name is written in another way.
        words << QString::fromUtf8(line.left(line.indexOf(' '))).remove(u'\\');
    }
    words.removeLast();
    return words;
}

} // namespace

class FileHashTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void oneFileHasItsDigestOrNone() {
        const QTemporaryDir folder;
        for (const qsizetype size : {0, 1, (1 << 20) - 1, 1 << 20, (1 << 20) + 1, 3 << 20}) {
            const QByteArray bytes = randomBytes(size, 5);
            QCOMPARE(MD5Helper::getMD5FromFile(written(folder, u"f"_s, bytes)),
                     QString::fromLatin1(
                         QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex()));
        }
        const QString pipe = folder.filePath(u"pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), S_IRUSR | S_IWUSR), 0);
        for (const QString& none : {folder.path(), folder.filePath(u"gone"_s), pipe}) {
            QCOMPARE(MD5Helper::getMD5FromFile(none), QString());
        }
    }

    void lanesAgreeWithTheLibrary_data() {
        columns<size_t>("kernel");
        for (size_t kernel = 0; kernel < md5lanes::kernels().size(); ++kernel) {
            row(md5lanes::kernels()[kernel].name, kernel);
        }
    }
    /// Every number of lanes, each with blocks of its own, in runs that end lane by lane.
    void lanesAgreeWithTheLibrary() {
        QFETCH(size_t, kernel);
        std::minstd_rand random(7);
        for (size_t active = 1; active <= md5lanes::lanes; ++active) {
            std::vector<QByteArray> data;
            md5lanes::States states{};
            md5lanes::Streams streams{};
            for (size_t lane = 0; lane < active; ++lane) {
                const size_t blocks = 1 + random() % 40;
                const auto size = static_cast<qsizetype>(blocks * md5lanes::blockSize);
                // Padded as the last blocks of a message that ends where a block does.
                QByteArray padded = randomBytes(size, static_cast<unsigned>(random()));
                padded += '\x80' + QByteArray(55, '\0');
                const quint64 bits = qToLittleEndian(static_cast<quint64>(size) * 8);
                padded.append(reinterpret_cast<const char*>(&bits), sizeof bits);
                data.push_back(padded);
                states.begin(lane);
                streams.blocks[lane] = blocks + 1;
            }
            for (size_t lane = 0; lane < active; ++lane) {
                streams.data[lane] = reinterpret_cast<const std::uint8_t*>(data[lane].constData());
            }
            std::vector<QByteArray> digests(active);
            std::vector<size_t> owner(active);
            std::iota(owner.begin(), owner.end(), 0);
            for (size_t left = active; left > 0;) {
                md5lanes::kernels()[kernel].kernel(states, streams, left);
                const auto* const ended =
                    std::find(streams.blocks, streams.blocks + left, size_t(0));
                QVERIFY(ended != streams.blocks + left);
                const auto lane = static_cast<size_t>(ended - streams.blocks);
                std::array<std::uint8_t, 16> digest{};
                states.store(lane, digest);
                digests[owner[lane]] =
                    QByteArray(reinterpret_cast<const char*>(digest.data()), digest.size());
                --left;
                states.exchange(lane, left);
                streams.data[lane] = streams.data[left];
                streams.blocks[lane] = streams.blocks[left];
                owner[lane] = owner[left];
            }
            for (size_t lane = 0; lane < active; ++lane) {
                QCOMPARE(digests[lane],
                         QCryptographicHash::hash(data[lane].chopped(64), QCryptographicHash::Md5));
            }
        }
    }

    void filesAgreeWithMd5sum_data() { lanesAgreeWithTheLibrary_data(); }
    /// More files than lanes, of all lengths around blocks and buffers, some of which are none.
    void filesAgreeWithMd5sum() {
        QFETCH(size_t, kernel);
        const QTemporaryDir folder;
        QStringList paths;
        unsigned seed = 0;
        QList<qsizetype> sizes{0,      1,      55,      56,    63,     64,     65,      119,
                               120,    65535,  65536,   65537, 131072, 131100, 3 << 20, 5,
                               700001, 262143, 1 << 20, 98303, 98304,  98305,  163840,  65591};
        for (qsizetype size = 0; size <= 200; ++size) {
            sizes << size;
        }
        for (const qsizetype size : sizes) {
            paths << written(folder, u"it's \"%1\" [ü]\\ %s"_s.arg(seed), randomBytes(size, seed));
            ++seed;
        }
        const QStringList expected = wordsOf(u"md5sum"_s, paths);
        QCOMPARE(expected.size(), paths.size());
        const auto digests = md5lanes::kernels()[kernel].kernel;
        QCOMPARE(digestsOf(paths, digests), expected);
        QCOMPARE(digestsOf(paths.mid(14, 1), digests), expected.mid(14, 1));
        // Twice, so that large files begin while others of their size are under way.
        QCOMPARE(digestsOf(paths.first(16) + paths.first(16), digests),
                 expected.first(16) + expected.first(16));
        for (qsizetype first = 0; first < paths.size(); ++first) {
            // Few at a time come to lanes, and to ends of buffers, that they never see among many.
            const qsizetype count = 2 + first % 3;
            QCOMPARE(digestsOf(paths.mid(first, count) + paths.first(1), digests),
                     expected.mid(first, count) + expected.first(1));
        }

        const QString pipe = folder.filePath(u"pipe"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), S_IRUSR | S_IWUSR), 0);
        const QString failing = u"/proc/self/mem"_s; // opens, and cannot be read at its beginning
        const QStringList mixed{paths[14], folder.path(), paths[3], pipe, folder.filePath(u"no"_s),
                                failing,   paths[0]};
        QCOMPARE(digestsOf(mixed, digests),
                 (QStringList{expected[14], QString::number(EISDIR), expected[3],
                              QString::number(EINVAL), QString::number(ENOENT),
                              QString::number(EIO), expected[0]}));
        QCOMPARE(FileHash::md5HashOfFileAtPath(failing), std::nullopt);
    }

    void aLengthOfMoreThan32BitsCounts() {
        const QTemporaryDir folder;
        const QString large = written(folder, u"large"_s, "x");
        QVERIFY(QFile::resize(large, (qint64(1) << 29) + 57));
        const QString small = written(folder, u"small"_s, "y");
        QCOMPARE(digestsOf({large, small}, md5lanes::kernels().front().kernel),
                 wordsOf(u"md5sum"_s, {large, small}));
    }

    void resultsComeAtOnceAndNoneAfterCancelling() {
        const QTemporaryDir folder;
        QStringList paths;
        for (int number = 0; number < 100; ++number) {
            paths << folder.filePath(QString::number(number));
        }
        QList<bool> found;
        const auto take = [&](qsizetype, const FileHash::Digest& digest) {
            if (found.isEmpty()) {
                written(folder, u"99"_s, "made when the first one was told of");
            }
            found << digest.has_value();
        };
        FileHash::md5HashesOfFilesAtPaths(paths, take, [](double /*share*/) { return true; });
        QCOMPARE(found, QList<bool>(99, false) << true);
        FileHash::md5HashesOfFilesAtPaths(paths, take,
                                          [&](double /*share*/) { return found.size() < 105; });
        QCOMPARE(found.size(), 105);
    }

    void aFileHasTheDigestsThatTheSystemFinds() {
        const QTemporaryDir folder;
        const QString file = written(folder, u"a"_s, randomBytes(600000, 3));
        QCOMPARE(FileHash::md5HashOfFileAtPath(file), wordsOf(u"md5sum"_s, {file}).first());
        QCOMPARE(FileHash::sha1HashOfFileAtPath(file), wordsOf(u"sha1sum"_s, {file}).first());
        QCOMPARE(FileHash::sha512HashOfFileAtPath(file), wordsOf(u"sha512sum"_s, {file}).first());
        QCOMPARE(FileHash::md5HashOfFileAtPath(folder.filePath(u"none"_s)), std::nullopt);
        QCOMPARE(FileHash::sha1HashOfFileAtPath(folder.path()), std::nullopt);
    }

    void cancellingEndsInTheMiddleOfAFile() {
        const QTemporaryDir folder;
        const QString large = folder.filePath(u"large"_s);
        QVERIFY(QFile(large).open(QIODevice::WriteOnly) && QFile::resize(large, qint64(1) << 40));
        for (const QStringList& paths : {QStringList{large}, QStringList{large, large}}) {
            int asked = 0;
            int told = 0;
            FileHash::md5HashesOfFilesAtPaths(
                paths, [&](qsizetype, const FileHash::Digest&) { ++told; },
                [&](double /*share*/) { return ++asked <= 3; });
            QCOMPARE(told, 0);
        }
    }

    void orderedWorkComesInOrderWhateverTakesLong() {
        std::atomic<int> begun = 0;
        std::vector<size_t> taken;
        const auto work = [&](size_t index) {
            ++begun;
            // The first one waits for others, which only come while it runs if they run beside it.
            while (index == 0 && begun < 3) {
                std::this_thread::yield();
            }
            return index * index;
        };
        OrderedWork<size_t>::run(100, 4, work, [&](size_t index, size_t result) {
            taken.push_back(result == index * index ? index : 1000);
            return true;
        });
        std::vector<size_t> expected(100);
        std::iota(expected.begin(), expected.end(), 0);
        QCOMPARE(taken, expected);

        begun = 3;
        OrderedWork<size_t>::run(100000, 4, work,
                                 [](size_t index, size_t /*result*/) { return index < 5; });
        QVERIFY2(begun < 200, "the work ran on after the taker had enough");
        const auto failing = [](size_t index) -> int {
            throw std::runtime_error(std::to_string(index));
        };
        QVERIFY_THROWS_EXCEPTION(
            std::runtime_error,
            OrderedWork<int>::run(9, 3, failing, [](size_t, int) { return true; }));
    }
};

QTEST_GUILESS_MAIN(FileHashTest)
#include "FileHashTest.moc"
