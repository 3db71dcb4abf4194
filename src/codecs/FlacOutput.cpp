#include "codecs/FlacOutput.h"

#include <QStringList>

namespace quav::flacoutput {

namespace {

QString stripped(const QString& piece) {
    qsizetype first = 0;
    qsizetype last = piece.size();
    while (first < last && piece[first] == u'\b') {
        ++first;
    }
    while (last > first && piece[last - 1] == u'\b') {
        --last;
    }
    return piece.mid(first, last - first).trimmed();
}

const QString separator = QStringLiteral(": ");

/// What stands before the first percent sign.
QString percentField(const QString& text) {
    return text.section(u'%', 0, 0);
}

QString detailIn(const QString& text) {
    const qsizetype ratio = text.indexOf(u"ratio=");
    return ratio < 0 ? QString() : text.mid(ratio);
}

} // namespace

std::optional<double> decodePercentage(const QString& piece) {
    const QString text = stripped(piece);
    if (!text.contains(u"% ")) {
        return std::nullopt;
    }
    const QString field = text.contains(separator) ? text.section(separator, 1, 1) : text;
    return percentField(field).toDouble();
}

EncodeProgress encodeProgress(const QString& piece) {
    const QString text = stripped(piece);
    if (!text.contains(u'%')) {
        return {};
    }
    EncodeProgress progress;
    progress.detail = detailIn(text);
    if (text.contains(separator)) {
        progress.percentText = percentField(text.section(separator, 1, 1));
    } else {
        progress.percentText = percentField(text);
        // The next update may have run into this one; its digits go with it.
        const qsizetype nextPercent = progress.detail.indexOf(u'%');
        if (nextPercent >= 0) {
            progress.detail.truncate(qMax<qsizetype>(0, nextPercent - 2));
        }
    }
    progress.detail.remove(u'\b');
    progress.percent = progress.percentText.toDouble();
    return progress;
}

ToolComplaint complaintIn(const QString& line, const QString& fileName) {
    const QString prefix = fileName + separator;
    const QString said = line.startsWith(prefix) ? line.mid(prefix.size()) : line;
    if (said.contains(u"ERROR") || said.contains(u"unexpected EOF")) {
        return ToolComplaint::Damage;
    }
    return said.contains(u"WARNING") ? ToolComplaint::Warning : ToolComplaint::None;
}

} // namespace quav::flacoutput
