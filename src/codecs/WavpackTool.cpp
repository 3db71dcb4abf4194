#include "codecs/WavpackTool.h"

#include <algorithm>
#include <iterator>

namespace quav::wavpack {

namespace {

/// Without backspaces and escape characters at its ends.
QString stripped(const QString& piece) {
    const auto isControl = [](QChar character) {
        return character == u'\b' || character == u'\x1b';
    };
    const auto first = std::find_if_not(piece.begin(), piece.end(), isControl);
    const auto last =
        std::find_if_not(piece.rbegin(), std::make_reverse_iterator(first), isControl);
    return QString(first, last.base() - first);
}

} // namespace

QStringList encodeArguments(const QString& level, const QString& input, const QString& output) {
    return {level, input, QStringLiteral("-o"), output};
}

QStringList decodeArguments(const QString& source, const QString& output, bool isTemporary) {
    QStringList arguments{source};
    if (isTemporary) {
        arguments << QStringLiteral("-y");
    }
    return arguments << QStringLiteral("-o") << output;
}

ToolReport read(const QString& piece) {
    const QString text = stripped(piece);
    ToolReport report;
    if (text.contains(u"% done...")) {
        QString number = text.section(u'%', 0, 0);
        const QString title = QStringLiteral("]0;");
        if (number.startsWith(title)) {
            number = number.mid(title.size());
        }
        report.percent = number.toDouble();
    }
    report.failed = text.contains(u"couldn't read all samples") ||
                    (text.contains(u"overwrite") && text.contains(u"(yes/no/all)?"));
    return report;
}

} // namespace quav::wavpack
