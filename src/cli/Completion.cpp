#include "cli/Completion.h"

#include "cli/CompletionScripts.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <algorithm>

namespace quav {

using namespace Qt::StringLiterals;

namespace {

/// What may stand in the place of a value.
enum class Kind { Nothing, Words, Files, Folders };

Kind kindOf(const OptionHelp& option) {
    static const QStringList files{u"FILE"_s,   u"FILES"_s, u"PATH"_s, u"INPUT"_s,
                                   u"OUTPUT"_s, u"IN"_s,    u"OUT"_s};
    const QString& word = option.operand ? option.names : option.value;
    if (!option.choices.isEmpty()) {
        return Kind::Words;
    }
    if (word == "DIR"_L1) {
        return Kind::Folders;
    }
    return files.contains(word) ? Kind::Files : Kind::Nothing;
}

QString quoted(const QString& text) {
    QString safe = text;
    return u'\'' + safe.replace(u'\'', u"'\\''"_s) + u'\'';
}

QString lastWord(const QString& command) {
    return command.section(u' ', -1);
}

QStringList innerNames(const CommandHelp& command) {
    QStringList names;
    for (const CommandHelp& inner : command.commands) {
        names << lastWord(inner.name);
    }
    return names;
}

/// A completion under work: `$NAME` in the frame of the script is the program, `$ID` what functions
/// are called after it, and `$COMMANDS` is the place of what the commands take.
class Script {
public:
    Script(const CommandHelp& program, bool isTool)
        : program_(program), isTool_(isTool),
          name_(isTool ? u"quav-"_s + program.name : program.name),
          id_(QString(name_).replace(u'-', u'_')) {}

    QString bash();
    QString zsh();
    QString fish();

private:
    QString filled(const char* frame) const;
    void bashCommand(const CommandHelp& command);
    void zshCommand(const CommandHelp& command);
    void fishCommand(const CommandHelp& command);
    void fishOption(const OptionHelp& option, const QString& start);
    void fishNames(const CommandHelp& command, QStringList& paths, QStringList& withValue) const;
    static QString bashValue(const OptionHelp& option);
    static QString zshValue(const OptionHelp& option);
    static QStringList zshOption(const OptionHelp& option);
    QString zshFunction(const CommandHelp& command) const;

    const CommandHelp& program_;
    bool isTool_;
    QString name_;
    QString id_;
    QString commands_;
};

QString Script::filled(const char* frame) const {
    QString text = QString::fromUtf8(frame).mid(1);
    text.replace("$COMMANDS\n"_L1, commands_);
    return text.replace("$NAME"_L1, program_.name).replace("$ID"_L1, id_);
}

QString Script::bashValue(const OptionHelp& option) {
    switch (kindOf(option)) {
    case Kind::Words:
        return quoted(option.choices.join(u' '));
    case Kind::Files:
        return u"/files"_s;
    case Kind::Folders:
        return u"/folders"_s;
    case Kind::Nothing:
        break;
    }
    return u"''"_s;
}

void Script::bashCommand(const CommandHelp& command) {
    QStringList names;
    QString takes;
    QStringList operands;
    QString several;
    for (const OptionHelp& option : command.options) {
        if (option.operand) {
            operands << bashValue(option);
            several = option.severalTimes ? u" several=yes"_s : QString();
            continue;
        }
        for (const QString& name : option.names.split(u',')) {
            names << name;
            if (!option.value.isEmpty()) {
                takes += u" [%1]=%2"_s.arg(name, bashValue(option));
            }
        }
    }
    commands_ += u"    %1)\n"_s.arg(quoted(command.name));
    commands_ += u"        commands=%1\n"_s.arg(quoted(innerNames(command).join(u' ')));
    commands_ += u"        options=%1\n"_s.arg(quoted(names.join(u' ')));
    commands_ += u"        takes=(%1)\n"_s.arg(takes.mid(1));
    commands_ += u"        operands=(%1)%2 ;;\n"_s.arg(operands.join(u' '), several);
    for (const CommandHelp& inner : command.commands) {
        bashCommand(inner);
    }
}

QString Script::bash() {
    bashCommand(program_);
    return filled(isTool_ ? completionscripts::bashTool : "\n") +
           filled(completionscripts::bash)
               .replace(
                   "$GUARD"_L1,
                   isTool_
                       ? u"_%1_is_ours \"$1\" || { compopt -o bashdefault -o default; return; }"_s
                             .arg(id_)
                       : u":"_s);
}

QString zshText(QString text) {
    return text.replace(u'\\', u"\\\\"_s)
        .replace(u':', u"\\:"_s)
        .replace(u'[', u"\\["_s)
        .replace(u']', u"\\]"_s);
}

QString Script::zshValue(const OptionHelp& option) {
    const QString message = u':' + zshText(option.operand ? option.names : option.value) + u':';
    switch (kindOf(option)) {
    case Kind::Words:
        return message + u'(' + option.choices.join(u' ') + u')';
    case Kind::Files:
        return message + u"_files"_s;
    case Kind::Folders:
        return message + u"_files -/"_s;
    case Kind::Nothing:
        break;
    }
    return message + u' ';
}

QStringList Script::zshOption(const OptionHelp& option) {
    if (option.operand) {
        return {quoted((option.severalTimes ? u"*"_s : QString()) + zshValue(option))};
    }
    QStringList specs;
    const QStringList names = option.names.split(u',');
    for (const QString& name : names) {
        QString spec = u'(' + names.join(u' ') + u')' + name;
        if (!option.value.isEmpty()) {
            spec += name.startsWith("--"_L1) ? u'=' : u'+';
        }
        spec += u'[' + zshText(option.description) + u']';
        specs << quoted(option.value.isEmpty() ? spec : spec + zshValue(option));
    }
    return specs;
}

QString Script::zshFunction(const CommandHelp& command) const {
    QString name = u"_%1"_s.arg(isTool_ ? u"quav-"_s + command.name : command.name);
    return name.replace(u' ', u'_');
}

void Script::zshCommand(const CommandHelp& command) {
    for (const CommandHelp& inner : command.commands) {
        zshCommand(inner);
    }
    QStringList specs;
    for (const OptionHelp& option : command.options) {
        specs << zshOption(option);
    }
    QString rest;
    if (!command.commands.empty()) {
        specs << u"'1:command:->command'"_s << u"'*::argument:->argument'"_s;
        QString list;
        QString cases;
        for (const CommandHelp& inner : command.commands) {
            const QString word = lastWord(inner.name);
            list += u' ' + quoted(word + u':' + inner.description);
            cases += u"        %1) %2 ;;\n"_s.arg(word, zshFunction(inner));
        }
        rest = u"    case $state in\n"
               "    command) local -a commands=(%1); _describe command commands ;;\n"
               "    argument)\n        case $line[1] in\n%2        esac ;;\n    esac\n"_s.arg(
                   list.mid(1), cases);
    }
    commands_ += u"%1() {\n    local curcontext=$curcontext state line\n"
                 "    typeset -A opt_args\n    _arguments -C -S \\\n        %2\n%3}\n"_s.arg(
                     zshFunction(command), specs.join(u" \\\n        "_s), rest);
}

QString Script::zsh() {
    zshCommand(program_);
    return filled(isTool_ ? completionscripts::zshTool : completionscripts::zshProgram) +
           filled(completionscripts::zsh)
               .replace("$COMPDEF"_L1,
                        isTool_ ? u"compdef -p $FUNCTION '*/quav/tools/%1'"_s.arg(program_.name)
                                : u"compdef $FUNCTION "_s + program_.name)
               .replace("$FUNCTION"_L1, zshFunction(program_));
}

void Script::fishNames(const CommandHelp& command, QStringList& paths,
                       QStringList& withValue) const {
    for (const OptionHelp& option : command.options) {
        if (!option.operand && !option.value.isEmpty()) {
            withValue << option.names.split(u',');
        }
    }
    for (const CommandHelp& inner : command.commands) {
        paths << quoted(inner.name);
        fishNames(inner, paths, withValue);
    }
}

QString fishQuoted(QString text) {
    return u'\'' + text.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s) + u'\'';
}

void Script::fishOption(const OptionHelp& option, const QString& start) {
    QString line = start;
    for (const QString& name : option.names.split(u',')) {
        line += name.startsWith("--"_L1) ? u" -l "_s + name.mid(2) : u" -s "_s + name.mid(1);
    }
    switch (option.value.isEmpty() ? Kind::Nothing : kindOf(option)) {
    case Kind::Words:
        line += u" -x -a "_s + fishQuoted(option.choices.join(u' '));
        break;
    case Kind::Files:
        line += u" -r -F"_s;
        break;
    case Kind::Folders:
        line += u" -x -a '(__fish_complete_directories)'"_s;
        break;
    case Kind::Nothing:
        line += option.value.isEmpty() ? QString() : u" -x"_s;
    }
    commands_ += line + u" -d %1\n"_s.arg(fishQuoted(option.description));
}

void Script::fishCommand(const CommandHelp& command) {
    const QString start = u"complete -c %1 -n \"__%2_at '%3'"_s.arg(name_, id_, command.name);
    int place = 0;
    for (const OptionHelp& option : command.options) {
        if (!option.operand) {
            fishOption(option, start + u'"');
            continue;
        }
        const QString here = option.severalTimes ? start + u'"' : start + u" %1\""_s.arg(place);
        if (kindOf(option) == Kind::Words) {
            commands_ += here + u" -a %1\n"_s.arg(fishQuoted(option.choices.join(u' ')));
        } else if (kindOf(option) == Kind::Files) {
            commands_ += here + u" -F\n"_s;
        }
        ++place;
    }
    for (const CommandHelp& inner : command.commands) {
        commands_ += start + u" 0\" -a %1 -d %2\n"_s.arg(lastWord(inner.name),
                                                         fishQuoted(inner.description));
        fishCommand(inner);
    }
}

QString Script::fish() {
    QStringList paths{u"''"_s};
    QStringList withValue;
    fishNames(program_, paths, withValue);
    withValue.removeDuplicates();
    fishCommand(program_);
    return filled(completionscripts::fish)
        .replace("$PATHS"_L1, paths.join(u' '))
        .replace("$WITHVALUE"_L1, withValue.isEmpty() ? u"''"_s : withValue.join(u' '))
        .replace("$COMMAND"_L1, name_);
}

QString write(const QByteArray& shell, Script script) {
    if (shell == "zsh") {
        return script.zsh();
    }
    return shell == "fish" ? script.fish() : script.bash();
}

/// A line of a tool's options, between tabs: "option", names, value, choices, description.
OptionHelp readOption(const QStringList& fields) {
    OptionHelp option;
    option.operand = fields.at(0) == "operand"_L1;
    option.names = fields.at(1);
    option.severalTimes = option.operand && option.names == "FILES"_L1;
    option.value = fields.at(2);
    option.choices = fields.at(3).split(u' ', Qt::SkipEmptyParts);
    option.description = fields.at(4);
    return option;
}

} // namespace

QString completionOfProgram(const QByteArray& shell, const CommandHelp& program) {
    return write(shell, {program, false});
}

QString completionOfTool(const QByteArray& shell, const CommandHelp& tool) {
    return write(shell, {tool, true});
}

tl::expected<CommandHelp, QString> readToolOptions(const QString& path) {
    QFile file(path);
    CommandHelp tool;
    if (file.open(QIODevice::ReadOnly)) {
        CommandHelp* command = nullptr;
        for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            const QStringList fields = line.split(u'\t');
            if (fields.at(0) == "command"_L1 && fields.size() == 3) {
                command = command == nullptr ? &tool : &tool.commands.emplace_back();
                command->name = fields.at(1);
                command->description = fields.at(2);
            } else if (command != nullptr && fields.size() == 5) {
                command->options.push_back(readOption(fields));
            }
        }
    }
    if (tool.name.isEmpty()) {
        return tl::make_unexpected(
            QCoreApplication::translate("Completion", "“%1” holds no options of a tool.")
                .arg(path));
    }
    return tool;
}

} // namespace quav
