#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// What our own readers say of the sound in two files of whatever formats without loss.
namespace quav::sound {

/// What a comparison came to.
struct Comparison {
    enum class Answer {
        Equal,
        Different,  ///< `why` says in what
        Damaged,    ///< the source is: `why` says how
        Unreadable, ///< the source cannot be read here, and `why` says why not
        Torn,       ///< the output is damaged or ends too early: `why` says how
        Stopped     ///< nobody wanted the answer any more
    };
    Answer answer = Answer::Equal;
    QString why;
    QByteArray digest; ///< MD5 of the samples as a WAV file has them, when they were compared
};

/// Decodes both files side by side and compares format, length and every sample. A digest that a
/// file stores of its own sound has to be right, too. `stop` is asked from time to time. Any
/// thread; takes as long as decoding takes.
Comparison compare(const QString& source, const QString& output, const std::function<bool()>& stop);

/// Compares what the headers tell: channels, sample rate, bytes of a sample, length. Equal also for
/// files that do not tell or that we cannot read: this is for what is certainly wrong.
Comparison compareHeaders(const QString& source, const QString& output);

/// What of the sound in a file its readers would pass over, in words; empty when all is read, and
/// for files that we cannot read.
QString leftOut(const QString& path);

} // namespace quav::sound
