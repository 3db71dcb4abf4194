#include "cli/Text.h"

#include <QList>

#include <algorithm>
#include <cwchar>

namespace quav::text {

namespace {

bool isControl(char32_t c) {
    return c < 0x20 || (c >= 0x7f && c < 0xa0);
}

QString hex(char32_t c, int digits) {
    return QString::number(static_cast<uint>(c), 16).rightJustified(digits, u'0');
}

QString escaped(char32_t c) {
    switch (c) {
    case U'\n':
        return QStringLiteral("\\n");
    case U'\r':
        return QStringLiteral("\\r");
    case U'\t':
        return QStringLiteral("\\t");
    default:
        return c < 0x80 ? QStringLiteral("\\x") + hex(c, 2) : QStringLiteral("\\u") + hex(c, 4);
    }
}

template <typename Keep>
QString escapedUnless(const QString& text, Keep keep) {
    QString result;
    for (const char32_t c : text.toUcs4()) {
        result += isControl(c) && !keep(c) ? escaped(c) : QString::fromUcs4(&c, 1);
    }
    return result;
}

bool isSafeInShell(QChar c) {
    return (c.unicode() < 0x80 && c.isLetterOrNumber()) || QStringView(u"_-+=./,:@%").contains(c);
}

/// A control character as what prints it, since a terminal would not take it as typed.
QString printedBySubshell(char32_t c) {
    QString octal;
    for (const char byte : QString::fromUcs4(&c, 1).toUtf8()) {
        octal +=
            u'\\' + QString::number(static_cast<unsigned char>(byte), 8).rightJustified(3, u'0');
    }
    return QStringLiteral("'\"$(printf '%1')\"'").arg(octal);
}

int columnsOf(char32_t c) {
    return std::max(0, wcwidth(static_cast<wchar_t>(c)));
}

} // namespace

QString printable(const QString& text) {
    return escapedUnless(text, [](char32_t) { return false; });
}

QString printableLines(const QString& text) {
    return escapedUnless(text, [](char32_t c) { return c == U'\n' || c == U'\t'; });
}

QString shellQuoted(const QString& word) {
    if (!word.isEmpty() && std::all_of(word.begin(), word.end(), isSafeInShell)) {
        return word;
    }
    QString quoted = QStringLiteral("'");
    for (const char32_t c : word.toUcs4()) {
        if (c == U'\'') {
            quoted += QStringLiteral("'\\''");
        } else if (isControl(c) && c != U'\n') {
            quoted += printedBySubshell(c);
        } else {
            quoted += QString::fromUcs4(&c, 1);
        }
    }
    return quoted + u'\'';
}

QString shellCommand(const QString& program, const QStringList& arguments) {
    QString line = shellQuoted(program);
    for (const QString& argument : arguments) {
        line += u' ' + shellQuoted(argument);
    }
    return line;
}

int columnsOf(const QString& text) {
    int columns = 0;
    for (const char32_t c : text.toUcs4()) {
        columns += columnsOf(c);
    }
    return columns;
}

QString cut(const QString& text, int columns) {
    QString result;
    for (const char32_t c : text.toUcs4()) {
        columns -= columnsOf(c);
        if (columns < 0) {
            break;
        }
        result += QString::fromUcs4(&c, 1);
    }
    return result;
}

} // namespace quav::text
