#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QtEndian>

#include <cstdint>
#include <random>

namespace quav::test {

using namespace Qt::StringLiterals;

/// The shape of a piece of test audio. The frame count is no multiple of any block size in use.
struct WavShape {
    int frames = 100003;
    int channels = 2;
    int bits = 16;
    int rate = 44100;
    unsigned seed = 1;
};

/// Writes a plain WAV file from a seeded generator; its first frames are full scale and one step,
/// so that errors of sign and justification show at once.
inline bool writeWav(const QString& path, const WavShape& shape = {}) {
    const int bytesPerSample = shape.bits / 8;
    const int frameBytes = shape.channels * bytesPerSample;
    const auto dataBytes = static_cast<uint32_t>(shape.frames) * static_cast<uint32_t>(frameBytes);
    QByteArray file;
    const auto put = [&file](auto value) {
        const auto little = qToLittleEndian(value);
        file.append(reinterpret_cast<const char*>(&little), sizeof little);
    };
    file.append("RIFF");
    put(uint32_t(36 + dataBytes));
    file.append("WAVEfmt ");
    put(uint32_t(16));
    put(uint16_t(1));
    put(uint16_t(shape.channels));
    put(uint32_t(shape.rate));
    put(uint32_t(shape.rate * frameBytes));
    put(uint16_t(frameBytes));
    put(uint16_t(shape.bits));
    file.append("data");
    put(uint32_t(dataBytes));

    std::minstd_rand random(shape.seed);
    const int64_t top = (int64_t(1) << (shape.bits - 1)) - 1;
    const int64_t edges[] = {top, -top - 1, 1, -1};
    int64_t level = 0;
    for (int frame = 0; frame < shape.frames; ++frame) {
        for (int channel = 0; channel < shape.channels; ++channel) {
            // A random walk with a pull to the middle compresses about as music does.
            level = level - level / 64 + int64_t(random() % 2001) - 1000;
            int64_t sample = frame < 4 ? edges[frame] : level;
            sample = shape.bits == 8 ? (sample & 0xff) : sample;
            const auto little = qToLittleEndian(static_cast<uint32_t>(sample));
            file.append(reinterpret_cast<const char*>(&little), bytesPerSample);
        }
    }
    QFile out(path);
    return out.open(QIODevice::WriteOnly) && out.write(file) == file.size();
}

/// What a program printed on standard output, and how it ended.
struct Ran {
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

inline Ran run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForFinished(-1);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

/// The digest of the decoded audio, by an independent decoder.
inline QByteArray audioMd5(const QString& path) {
    return run(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-i"_s, u"file:"_s + path, u"-map"_s, u"0:a"_s,
                             u"-f"_s, u"md5"_s, u"-"_s})
        .output;
}

inline QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Writes a file, and the folder that it is to be in. A link, as to one of the system's tools,
/// gives way to it.
inline bool writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    if (QFileInfo(path).isSymLink()) {
        QFile::remove(path);
    }
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// Lets a tool of a tools folder be, but for what a script does before it. "$real" is the tool.
inline void wrapTool(const QString& tool, const QString& script) {
    const QString real = QFile::symLinkTarget(tool);
    QFile file(tool);
    file.remove();
    file.open(QIODevice::WriteOnly);
    file.write(u"#!/bin/sh\nreal='%1'\n%2\nexec \"$real\" \"$@\"\n"_s.arg(real, script).toUtf8());
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
}

} // namespace quav::test
