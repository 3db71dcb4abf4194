#include "cli/Cli.h"
#include "engine/ToolsFolder.h"
#include "support/Table.h"

using namespace quav;
using namespace quav::test;

/// The table of tools and those that read it: the links of the tools folder, the set-up script, and
/// Debian, whose packages and programs it names.
class ToolsTableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        qunsetenv("QUAV_TOOLS_DIR");
        packages_ = QString::fromUtf8(test::run(setup_, {u"--list"_s}).output).split(u'\n');
        for (const QJsonObject& tool :
             jsonLines(test::run(cli_, words(u"tools --json"_s)).output)) {
            listed_.insert(tool[u"tool"_s].toString(), tool);
        }
        QCOMPARE(size_t(listed_.size()), ToolsFolder::definitions().size());
    }

    void aToolIsThereAndItsPackageIsSetUp_data() {
        QTest::addColumn<QString>("package");
        for (const ToolDefinition& tool : ToolsFolder::definitions()) {
            QTest::newRow(tool.name) << QString::fromLatin1(tool.package);
        }
    }
    void aToolIsThereAndItsPackageIsSetUp() {
        QFETCH(QString, package);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const QJsonObject tool = listed_[name];
        QVERIFY(tool[u"found"_s].toBool());
        // The packaged one tells everything but its number.
        QVERIFY(!tool[u"version"_s].toString().isEmpty() || name == u"AtomicParsley");
        QVERIFY(name != u"sox" || tool[u"version"_s].toString().startsWith(u"14.")); // “v14.4.2”
        QCOMPARE(packages_.contains(package), package != u"quav");
        const QFileInfo file(tool[u"path"_s].toString());
        QCOMPARE(file.isSymLink(), package != u"quav");
        if (file.isSymLink() && !QStandardPaths::findExecutable(u"dpkg-query"_s).isEmpty()) {
            const Ran owner = test::run(u"dpkg-query"_s, {u"--search"_s, file.symLinkTarget()});
            QVERIFY2(owner.output.startsWith(package.toUtf8() + ':'), owner.output.constData());
        }
    }

    void theLinksFollowWhatIsInstalled() {
        const QTemporaryDir place;
        const auto path = [&](const char* name) { return place.filePath(QLatin1StringView(name)); };
        const QString link = path("tools/link");
        writeFile(path("table"), R"({"link", "quav-program", "package", "--version"},)");
        QVERIFY(QDir(place.path()).mkpath(u"tools"_s));
        QFile::link(path("gone"), path("tools/dangling"));
        QVERIFY(writeFile(path("tools/ours"), "built"));
        const auto build = [&] {
            return test::run(u"env"_s,
                             {u"PATH=%1:%2"_s.arg(path("bin"), qEnvironmentVariable("PATH")),
                              u"cmake"_s, u"-DTABLE="_s + path("table"),
                              u"-DFOLDER="_s + path("tools"), u"-P"_s, linkTools_})
                .status;
        };
        const auto links = [&] {
            return QDir(path("tools")).entryList(QDir::Files | QDir::System);
        };

        QCOMPARE(build(), 0);
        QCOMPARE(links(), QStringList{u"ours"_s});

        writeFile(path("bin/quav-program"), "#!/bin/sh\n");
        QFile::setPermissions(path("bin/quav-program"), QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(build(), 0);
        QCOMPARE(QFile::symLinkTarget(link), path("bin/quav-program"));

        QFile::remove(path("bin/quav-program"));
        QCOMPARE(build(), 0);
        QCOMPARE(links(), QStringList{u"ours"_s});
    }

    void theSetUpGoesOnWithoutToolsButNotWithoutACompiler_data() {
        columns<QString, QString, bool>("missing", "arguments", "goesOn");
        row("a tool", "icedax", "", true);
        row("a tool that tests need", "icedax", "--tests", false);
        row("what builds", "ninja-build", "", false);
    }
    void theSetUpGoesOnWithoutToolsButNotWithoutACompiler() {
        QFETCH(QString, missing);
        QFETCH(QString, arguments);
        QFETCH(bool, goesOn);
        const QTemporaryDir bin;
        const auto program = [&](const QString& name, const QString& script) {
            QVERIFY(writeFile(bin.filePath(name), u"#!/bin/sh\n"_s.toUtf8() + script.toUtf8()));
            QFile::setPermissions(bin.filePath(name), QFile::ReadOwner | QFile::ExeOwner);
        };
        program(u"apt-get"_s, u"exit 100\n"_s);
        program(u"sudo"_s, u"exec \"$@\"\n"_s);
        program(u"dpkg-query"_s,
                u"for p; do [ \"$p\" = %1 ] || echo \"installed $p\"; done\n"_s.arg(missing));
        const QStringList path{u"PATH=%1:%2"_s.arg(bin.path(), qEnvironmentVariable("PATH"))};
        const Ran ran = test::run(u"env"_s, path + QStringList{setup_} + words(arguments));
        QCOMPARE(ran.status == 0, goesOn);
        QVERIFY2(ran.errors.contains(missing.toUtf8()), ran.errors.constData());
    }

private:
    const QString cli_ = QStringLiteral(QUAV_CLI);
    const QString setup_ = QStringLiteral(QUAV_SOURCES "/scripts/setup");
    const QString linkTools_ = QStringLiteral(QUAV_SOURCES "/cmake/LinkTools.cmake");
    QStringList packages_;
    QHash<QString, QJsonObject> listed_;
};

QTEST_GUILESS_MAIN(ToolsTableTest)
#include "ToolsTableTest.moc"
