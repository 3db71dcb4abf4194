#include "cli/Terminal.h"

#include "cli/Text.h"
#include "engine/ReportText.h"

#include <sys/ioctl.h>

#include <cstdio>
#include <unistd.h>

namespace quav {

namespace {

constexpr int usualColumns = 80;
constexpr int usualRows = 24;

winsize sizeOfTerminal() {
    winsize size{};
    ioctl(STDERR_FILENO, TIOCGWINSZ, &size);
    return size;
}

void write(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

bool isCapable(const QByteArray& terminal) {
    return !terminal.isEmpty() && terminal != "dumb";
}

} // namespace

Terminal::Terminal()
    : canAsk_(isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0),
      canRedraw_(isatty(STDERR_FILENO) != 0 && isCapable(qgetenv("TERM"))),
      outputIsTerminal_(isatty(STDOUT_FILENO) != 0) {}

void Terminal::say(const QString& message) {
    clear();
    write(stderr, text::printableLines(message) + u'\n');
}

void Terminal::print(const QString& text) {
    printPart(text.endsWith(u'\n') ? text : text + u'\n');
}

void Terminal::print(const ReportText& text) {
    bool endsLine = false;
    text.read([&](const QByteArray& piece) {
        printPart(QString::fromUtf8(piece));
        endsLine = piece.endsWith('\n');
    });
    if (!endsLine) {
        printPart(QStringLiteral("\n"));
    }
}

void Terminal::printPart(const QString& text) {
    if (outputIsTerminal_) {
        clear();
    }
    write(stdout, outputIsTerminal_ ? text::printableLines(text) : text);
}

std::optional<QString> Terminal::ask(const QString& prompt) {
    clear();
    write(stderr, text::printableLines(prompt) + u' ');
    QByteArray line;
    for (char byte = 0; read(STDIN_FILENO, &byte, 1) == 1;) {
        if (byte == '\n') {
            return QString::fromUtf8(line);
        }
        line += byte;
    }
    write(stderr, QStringLiteral("\n"));
    return std::nullopt;
}

void Terminal::show(const QStringList& lines) {
    QString screen = shown_ > 0 ? QStringLiteral("\x1b[%1A").arg(shown_) : QString();
    for (const QString& line : lines) {
        screen +=
            u'\r' + text::cut(text::printable(line), columns() - 1) + QStringLiteral("\x1b[K\n");
    }
    screen += QStringLiteral("\x1b[J");
    shown_ = lines.size();
    write(stderr, screen);
}

void Terminal::clear() {
    if (shown_ > 0) {
        show({});
    }
}

int Terminal::rows() const {
    const int rows = sizeOfTerminal().ws_row;
    return (rows > 0 ? rows : usualRows) - 1;
}

int Terminal::columns() const {
    const int columns = sizeOfTerminal().ws_col;
    return columns > 0 ? columns : usualColumns;
}

} // namespace quav
