#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace quav::test {

inline void appendNumber(QByteArray& to, uint32_t number, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        to.append(static_cast<char>(number >> (8 * i)));
    }
}

/// A WAV file of interleaved samples, with whole chunks before and after them.
inline QByteArray wavFile(const std::vector<int>& samples, int channels, int bits, uint32_t rate,
                          const QByteArray& before = {}, const QByteArray& after = {}) {
    const auto width = static_cast<uint32_t>(bits / 8);
    const auto align = static_cast<uint32_t>(channels) * width;
    QByteArray body("WAVEfmt \x10\0\0\0\x01\0", 14);
    appendNumber(body, static_cast<uint32_t>(channels), 2);
    appendNumber(body, rate, 4);
    appendNumber(body, rate * align, 4);
    appendNumber(body, align, 2);
    appendNumber(body, 8 * width, 2);
    body += before + "data";
    const auto dataBytes = static_cast<uint32_t>(samples.size()) * width;
    appendNumber(body, dataBytes, 4);
    for (const int sample : samples) {
        appendNumber(body, static_cast<uint32_t>(bits == 8 ? sample + 128 : sample), bits / 8);
    }
    body += QByteArray(dataBytes % 2, '\0') + after;
    QByteArray file = "RIFF";
    appendNumber(file, static_cast<uint32_t>(body.size()), 4);
    return file + body;
}

/// A linear congruential generator; its high bits are good noise.
struct Noise {
    uint32_t state = 1;
    int operator()(int bits) {
        state = state * 1664525U + 1013904223U;
        return static_cast<int>(state >> (32 - bits));
    }
};

/// A triangle wave from -height up to height and down again, 2 * half steps long.
inline int triangle(int n, int half, int height) {
    const int rise = 2 * height * std::min(n % (2 * half), 2 * half - n % (2 * half));
    return (rise - (rise < 0 ? half - 1 : 0)) / half - height; // rounded down
}

/// Triangle waves with some noise: they compress about as music does. One channel, or two.
inline std::vector<int> waves(int blocks, int bits, int channels) {
    Noise noise;
    std::vector<int> samples;
    for (int n = 0; n < blocks; ++n) {
        int left = triangle(n, 100, 12000) + triangle(n, 37, 3000) + noise(8) - 128;
        int right = triangle(n, 90, 9000) + triangle(n, 37, -2000) + noise(7) - 64;
        left = bits == 8 ? left >> 7 : bits == 24 ? left * 64 + noise(6) : left;
        right = bits == 8 ? right >> 7 : bits == 24 ? right * 64 + noise(6) : right;
        samples.push_back(left);
        if (channels == 2) {
            samples.push_back(right);
        }
    }
    return samples;
}

/// A chunk that names the artist (IART) or the title (INAM).
inline QByteArray listChunk(const QByteArray& tag, const QByteArray& eightBytes) {
    return QByteArray("LIST\x14\0\0\0INFO", 12) + tag + QByteArray("\x08\0\0\0", 4) + eightBytes;
}

/// The WAV files that the encoders are held against: integers alone make them, so every machine
/// gets the same bytes, and what becomes of them can be compared by digest.
inline QByteArray pcmFixture(QByteArrayView name) {
    if (name == "mono") {
        return wavFile(waves(80000, 16, 1), 1, 16, 44100);
    }
    if (name == "eightbit") {
        return wavFile(waves(20000, 8, 2), 2, 8, 22050);
    }
    if (name == "mono8odd") {
        return wavFile(waves(3001, 8, 1), 1, 8, 11025);
    }
    if (name == "hires") {
        return wavFile(waves(60000, 24, 2), 2, 24, 96000);
    }
    if (name == "chunks") {
        return wavFile(waves(1000, 16, 2), 2, 16, 44100,
                       listChunk("IART", QByteArray("tester\0\0", 8)),
                       listChunk("INAM", QByteArray("trailer\0", 8)));
    }
    std::vector<int> samples; // of 16 bit stereo
    if (name == "one") {
        samples = {1, -1};
    } else if (name == "eight") {
        samples = {0,   0,   100, 90,  200,    170,   300,   260,
                   400, 330, 350, 300, -32768, 32767, 32767, -32768};
    } else if (name == "waves") {
        samples = waves(100000, 16, 2);
    } else if (name == "noise") {
        samples.resize(100000);
        std::generate(samples.begin(), samples.end(),
                      [noise = Noise()]() mutable { return noise(16); });
    } else if (name == "silence") {
        samples.resize(200000);
    } else if (name == "same") {
        for (const int sample : waves(80000, 16, 1)) {
            samples.insert(samples.end(), 2, sample);
        }
    } else if (name == "pulse") {
        samples.resize(40000);
        samples[1] = 1;
        for (size_t n = 4095; n < 20000; n += 4096) {
            samples[2 * n] = 30000;
            samples[2 * n + 1] = -30000;
        }
    }
    return wavFile(samples, 2, 16, 44100);
}

} // namespace quav::test
