// MD5 as checksum files need it, reading included, from files that lie in memory: one large file
// beside `openssl dgst -md5`, and a list of twelve on one core beside `md5sum`, with each kernel
// that the machine has. Best of several turns.

#include "checksums/FileHash.h"
#include "support/Figures.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <sched.h>
#include <string_view>

using namespace quav;

namespace {

constexpr int files = 12;
constexpr qint64 megabyte = 1000 * 1000;
constexpr qint64 fileBytes = 60 * megabyte;
constexpr qint64 largeFileBytes = 1000 * megabyte;
constexpr int turns = 5;

struct Bar {
    std::string_view kernel;
    double times;
};
constexpr Bar bars[] = {{"AVX-512", 6}, {"AVX2", 4}, {"portable", 2}};

QString written(const QTemporaryDir& folder, int number, qint64 bytes) {
    QFile file(folder.filePath(QString::number(number)));
    std::minstd_rand random(static_cast<unsigned>(number) + 1);
    QByteArray piece(megabyte, Qt::Uninitialized);
    std::generate(piece.begin(), piece.end(), [&] { return static_cast<char>(random()); });
    if (!file.open(QIODevice::WriteOnly)) {
        std::exit(1);
    }
    for (qint64 left = bytes; left > 0; left -= piece.size()) {
        file.write(piece);
    }
    return file.fileName();
}

void ran(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        std::printf("%s could not be run\n", qPrintable(program));
        std::exit(1);
    }
}

/// Milliseconds of both, the best of several turns.
std::pair<double, double> inTurns(const std::function<void()>& ours,
                                  const std::function<void()>& reference) {
    double best = std::numeric_limits<double>::max();
    double referenceBest = best;
    for (int turn = 0; turn < turns; ++turn) {
        referenceBest = std::min(referenceBest, bench::millisecondsOf(reference));
        best = std::min(best, bench::millisecondsOf(ours));
    }
    return {best, referenceBest};
}

bool tell(const char* what, double bytes, std::pair<double, double> milliseconds,
          const char* reference, double bar) {
    const double ratio = milliseconds.second / milliseconds.first;
    std::printf("%-28s ours %7.0f MB/s   %-18s %7.0f MB/s   times %5.2f   bar %4.2f   %s\n", what,
                bytes / milliseconds.first / 1000, reference, bytes / milliseconds.second / 1000,
                ratio, bar, ratio >= bar ? "met" : "MISSED");
    std::fflush(stdout);
    return ratio >= bar;
}

bool oneLargeFile(const QTemporaryDir& folder) {
    const QString file = written(folder, files, largeFileBytes);
    const auto milliseconds = inTurns(
        [&] { FileHash::md5HashOfFileAtPath(file); },
        [&] {
            ran(QStringLiteral("openssl"), {QStringLiteral("dgst"), QStringLiteral("-md5"), file});
        });
    QFile::remove(file);
    constexpr double bar = 0.95;
    return tell("one file", largeFileBytes, milliseconds, "openssl dgst -md5", bar);
}

/// A digest that is not there costs nothing.
void mustBeThere(qsizetype /*index*/, const FileHash::Digest& digest) {
    if (!digest) {
        std::printf("a file has no digest\n");
        std::exit(1);
    }
}

/// The reference inherits the one core that we run on.
void stayOnOneCore() {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<unsigned>(sched_getcpu()), &one);
    sched_setaffinity(0, sizeof one, &one);
}

bool listOfFiles(const QTemporaryDir& folder) {
    QStringList list;
    for (int number = 0; number < files; ++number) {
        list << written(folder, number, fileBytes + number * megabyte);
    }
    const double bytes = files * fileBytes + files * (files - 1) / 2 * megabyte;
    bool allMet = true;
    for (const md5lanes::NamedKernel& kernel : md5lanes::kernels()) {
        const auto milliseconds = inTurns(
            [&] {
                FileHash::md5HashesOfFilesAtPaths(
                    list, mustBeThere, [](double) { return true; }, kernel.kernel);
            },
            [&] { ran(QStringLiteral("md5sum"), list); });
        const auto* bar = std::find_if(std::begin(bars), std::end(bars),
                                       [&](const Bar& one) { return one.kernel == kernel.name; });
        const std::string what = std::string("twelve files, ") + kernel.name;
        allMet &= tell(what.c_str(), bytes, milliseconds, "md5sum", bar->times);
    }
    return allMet;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const bool one = oneLargeFile(folder);
    stayOnOneCore();
    return listOfFiles(folder) && one ? 0 : 1;
}
