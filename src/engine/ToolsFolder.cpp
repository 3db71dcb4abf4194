#include "engine/ToolsFolder.h"

#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace quav {

namespace {

constexpr auto tools = std::to_array<ToolDefinition>({
#include "engine/Tools.inc"
});

bool isUtf8Locale(const QProcessEnvironment& environment) {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const QString value = environment.value(QString::fromLatin1(name));
        if (!value.isEmpty()) {
            return value.contains(u"UTF-8", Qt::CaseInsensitive) ||
                   value.contains(u"utf8", Qt::CaseInsensitive);
        }
    }
    return false;
}

QProcessEnvironment environmentWith(const QString& folder) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString path = QStringLiteral("PATH");
    environment.insert(path, environment.value(path) + u':' + folder);
    environment.insert(QStringLiteral("NSUnbufferedIO"), QStringLiteral("YES"));
    for (const char* misleading : {"POSIXLY_CORRECT", "LAMEOPT", "SOX_OPTS", "ST_DEBUG"}) {
        environment.remove(QString::fromLatin1(misleading));
    }
    if (!isUtf8Locale(environment)) {
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    }
    return environment;
}

} // namespace

ToolsFolder::ToolsFolder(QString folder)
    : folder_(std::move(folder)), environment_(environmentWith(folder_)) {}

QString ToolsFolder::standardFolder() {
    const QString chosen = qEnvironmentVariable("QUAV_TOOLS_DIR");
    if (!chosen.isEmpty()) {
        return QDir(chosen).absolutePath();
    }
    const QDir program(QCoreApplication::applicationDirPath());
    const QString installed = program.absoluteFilePath(QStringLiteral("../libexec/quav/tools"));
    return QDir::cleanPath(QFileInfo(installed).isDir()
                               ? installed
                               : program.absoluteFilePath(QStringLiteral("tools")));
}

std::span<const ToolDefinition> ToolsFolder::definitions() {
    return tools;
}

QString ToolsFolder::tool(const QString& name) const {
    return joinPath(folder_, name);
}

bool ToolsFolder::has(const QString& name) const {
    const QFileInfo info(tool(name));
    return info.isFile() && info.isExecutable();
}

QString ToolsFolder::whatIsMissing(const QString& name) const {
    const auto known = std::find_if(tools.begin(), tools.end(), [&](const ToolDefinition& one) {
        return name == QLatin1StringView(one.name);
    });
    if (known == tools.end()) {
        return QCoreApplication::translate("ToolsFolder", "The tool “%1” is not in “%2”.")
            .arg(name, folder_);
    }
    return QCoreApplication::translate(
               "ToolsFolder", "The tool “%1” is not in “%2”. The Debian package “%3” brings it.")
        .arg(name, folder_, QString::fromLatin1(known->package));
}

QStringList ToolsFolder::whatIsMissing(QStringList names) const {
    names.removeDuplicates();
    QStringList sentences;
    for (const QString& name : std::as_const(names)) {
        if (!has(name)) {
            sentences << whatIsMissing(name);
        }
    }
    return sentences;
}

} // namespace quav
