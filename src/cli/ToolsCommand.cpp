#include "cli/ToolsCommand.h"

#include "cli/Json.h"
#include "cli/Options.h"
#include "cli/Terminal.h"
#include "cli/Text.h"
#include "engine/NSTaskWrapperSync.h"
#include "engine/ToolsFolder.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace quav {

namespace {

struct FoundTool {
    QString name;
    QString package;
    QString path;    ///< empty when it is missing
    QString version; ///< empty when it does not tell
};

FoundTool look(const ToolDefinition& definition, const ToolsFolder& tools) {
    FoundTool found{
        QString::fromLatin1(definition.name), QString::fromLatin1(definition.package), {}, {}};
    if (tools.has(found.name)) {
        found.path = tools.tool(found.name);
        found.version = versionIn(
            NSTaskWrapperSync(tools, found.path, {QString::fromLatin1(definition.versionArgument)})
                .runTask());
    }
    return found;
}

QString asLine(const FoundTool& tool) {
    constexpr int nameColumn = 15;
    constexpr int versionColumn = 12;
    const QString name = tool.name.leftJustified(nameColumn);
    if (tool.path.isEmpty()) {
        return name + QCoreApplication::translate("ToolsCommand",
                                                  "missing; the Debian package “%1” brings it")
                          .arg(tool.package);
    }
    const QString version = tool.version.isEmpty()
                                ? QCoreApplication::translate("ToolsCommand", "unknown")
                                : tool.version;
    return name + version.leftJustified(versionColumn) + u' ' + text::printable(tool.path);
}

QJsonObject asJsonObject(const FoundTool& tool) {
    QJsonObject object{{QStringLiteral("tool"), tool.name},
                       {QStringLiteral("package"), tool.package},
                       {QStringLiteral("found"), !tool.path.isEmpty()}};
    if (!tool.path.isEmpty()) {
        object.insert(QStringLiteral("path"), tool.path);
        object.insert(QStringLiteral("version"), tool.version);
    }
    return object;
}

} // namespace

QString versionIn(const QString& printed) {
    static const QRegularExpression version(
        QStringLiteral("(?<![\\w.])v?(\\d+(\\.\\w+)+([-+~]\\w+)*)"));
    return version.match(printed).captured(1);
}

int listTools(bool asJson, Terminal& terminal) {
    const ToolsFolder tools(ToolsFolder::standardFolder());
    for (const ToolDefinition& definition : ToolsFolder::definitions()) {
        const FoundTool tool = look(definition, tools);
        terminal.print(asJson ? jsonLine(asJsonObject(tool)) : asLine(tool));
    }
    return exitstatus::succeeded;
}

} // namespace quav
