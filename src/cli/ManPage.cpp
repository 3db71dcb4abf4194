#include "cli/ManPage.h"

#include "cli/Options.h"
#include "platform/Version.h"

#include <QCoreApplication>
#include <QStringList>

namespace quav {

namespace {

/// Writes requests and text so that text is never taken for a request.
class ManPageWriter {
    Q_DECLARE_TR_FUNCTIONS(ManPage)

public:
    QString write(const CommandHelp& program);

private:
    void section(const QString& title) { page_ += QStringLiteral(".SH %1\n").arg(escaped(title)); }
    void paragraph(const QString& text) { page_ += QStringLiteral(".PP\n") + line(text); }
    void entry(const QString& term, const QString& text);
    void names(const CommandHelp& program);
    void synopsis(const CommandHelp& command);
    void commands(const CommandHelp& program);
    void command(const CommandHelp& command);
    void options(const CommandHelp& command);
    void exitStatus();
    void files();
    void environment();
    void examples();
    void example(const QString& text, const QString& command);

    static QString escaped(const QString& text);
    static QString line(const QString& text);
    static QString sentence(const QString& text);
    static QString bold(const QString& text);
    static QString italic(const QString& text);
    static QString usage(const CommandHelp& command);
    static QString usage(const OptionHelp& option);

    QString page_;
};

QString ManPageWriter::escaped(const QString& text) {
    QString result = text;
    result.replace(u'\\', QStringLiteral("\\e")).replace(u'-', QStringLiteral("\\-"));
    return result.replace(u'\'', QStringLiteral("\\(aq"));
}

QString ManPageWriter::line(const QString& text) {
    const QString safe = escaped(text);
    return (safe.startsWith(u'.') ? QStringLiteral("\\&") + safe : safe) + u'\n';
}

QString ManPageWriter::sentence(const QString& text) {
    return text.left(1).toUpper() + text.mid(1) + u'.';
}

QString ManPageWriter::bold(const QString& text) {
    return QStringLiteral("\\fB%1\\fR").arg(escaped(text));
}

QString ManPageWriter::italic(const QString& text) {
    return QStringLiteral("\\fI%1\\fR").arg(escaped(text));
}

void ManPageWriter::entry(const QString& term, const QString& text) {
    page_ += QStringLiteral(".TP\n%1\n").arg(term) + line(text);
}

QString ManPageWriter::usage(const OptionHelp& option) {
    if (option.operand) {
        return italic(option.names) + (option.severalTimes ? QStringLiteral("...") : QString());
    }
    QStringList names;
    for (const QString& name : option.names.split(u',')) {
        names << bold(name);
    }
    QString usage = names.join(QStringLiteral(", "));
    if (!option.value.isEmpty()) {
        usage += u' ' + italic(option.value);
    }
    return usage;
}

QString ManPageWriter::usage(const CommandHelp& command) {
    QStringList parts{bold(command.name)};
    for (const OptionHelp& option : command.options) {
        if (option.required && !option.operand) {
            parts << usage(option);
        }
    }
    parts << QStringLiteral("[\\fIOPTIONS\\fR]");
    for (const OptionHelp& option : command.options) {
        if (option.operand) {
            parts << usage(option);
        }
    }
    return parts.join(u' ');
}

void ManPageWriter::names(const CommandHelp& program) {
    const QString title = program.name.toUpper();
    page_ += QStringLiteral(".TH %1 1 \"\" \"Quav Workbench %2\" \"%3\"\n")
                 .arg(escaped(title), escaped(shortVersion()), escaped(tr("User commands")));
    section(tr("NAME"));
    page_ += escaped(program.name) + QStringLiteral(" \\- ") +
             line(tr("convert lossless music, many files at a time"));
}

void ManPageWriter::synopsis(const CommandHelp& command) {
    if (command.commands.empty()) {
        page_ += usage(command) + QStringLiteral("\n.br\n");
    }
    for (const CommandHelp& inner : command.commands) {
        synopsis(inner);
    }
}

void ManPageWriter::options(const CommandHelp& command) {
    for (const OptionHelp& option : command.options) {
        const QString text = option.description + u'.';
        entry(usage(option), option.defaultText.isEmpty()
                                 ? text
                                 : text + u' ' + tr("Default: %1.").arg(option.defaultText));
    }
}

void ManPageWriter::command(const CommandHelp& command) {
    if (!command.commands.empty()) {
        commands(command);
        return;
    }
    page_ += QStringLiteral(".SS %1\n").arg(escaped(command.name));
    page_ += line(command.description + u'.');
    options(command);
}

void ManPageWriter::commands(const CommandHelp& program) {
    for (const CommandHelp& inner : program.commands) {
        command(inner);
    }
}

void ManPageWriter::exitStatus() {
    section(tr("EXIT STATUS"));
    for (const exitstatus::Meaning& meaning : exitstatus::meanings) {
        entry(bold(QString::number(meaning.status)),
              sentence(QCoreApplication::translate("ExitStatus", meaning.text)));
    }
    paragraph(tr("Files of other types in the folders that are searched are skipped and count for "
                 "nothing."));
}

void ManPageWriter::files() {
    section(tr("FILES"));
    entry(italic(QStringLiteral("~/.config/quav/quav.ini")),
          tr("The settings, which the window uses as well; below $XDG_CONFIG_HOME if that is set. "
             "Only what was changed is in it."));
    entry(italic(QStringLiteral("PREFIX/libexec/quav/tools")),
          tr("The tools that do the work, or links to them."));
}

void ManPageWriter::environment() {
    section(tr("ENVIRONMENT"));
    entry(bold(QStringLiteral("QUAV_TOOLS_DIR")),
          tr("The folder of the tools, if not the usual one."));
    entry(bold(QStringLiteral("LANGUAGE")),
          tr("The languages of what the program says, the best one first; without it the locale's. "
             "There are English and German."));
}

void ManPageWriter::example(const QString& text, const QString& command) {
    paragraph(text);
    page_ += QStringLiteral(".RS 4\n.EX\n") + line(command) + QStringLiteral(".EE\n.RE\n");
}

void ManPageWriter::examples() {
    section(tr("EXAMPLES"));
    example(tr("Encode everything below a folder into another one:"),
            QStringLiteral("quav-cli encode --to flac --output archive concert"));
    example(tr("Only show what would be done, as commands for a shell:"),
            QStringLiteral("quav-cli encode --to flac --dry-run --output archive concert"));
    example(tr("Turn FLAC files back into WAV beside them, four at a time:"),
            QStringLiteral("quav-cli decode --to wav --beside --jobs 4 concert/*.flac"));
    example(tr("Check everything that the checksum files below a folder name:"),
            QStringLiteral("quav-cli checksum verify concert"));
    example(tr("A file whose name begins with a dash:"),
            QStringLiteral("quav-cli encode --to flac --beside -- -intro.wav"));
}

QString ManPageWriter::write(const CommandHelp& program) {
    names(program);
    section(tr("SYNOPSIS"));
    synopsis(program);
    section(tr("DESCRIPTION"));
    page_ += line(program.description);
    paragraph(tr("A question is asked at the terminal. Without one it counts as answered with its "
                 "default button. Ctrl-C drops the files that wait and lets the tools finish the "
                 "files that they are at; a second one stops the tools. The report of a set of "
                 "files goes to the standard output when the set is done and something in it went "
                 "wrong, or when the report is what was asked for; everything else goes to the "
                 "standard error stream."));
    section(tr("OPTIONS"));
    options(program);
    section(tr("COMMANDS"));
    commands(program);
    exitStatus();
    files();
    environment();
    examples();
    return page_;
}

} // namespace

QString manPage(const CommandHelp& program) {
    return ManPageWriter().write(program);
}

} // namespace quav
