#include "GuiRig.h"
#include "engine/TaskReport.h"
#include "gui/SummaryLine.h"
#include "support/Table.h"

#include <QJsonArray>

#include <csignal>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

/// What a face has told, as lines that compare: failures and warnings as "NAME: WHY".
struct Told {
    QString summary;
    QStringList failures;
    QStringList warnings;
    QStringList badFiles; ///< paths
};

/// A window and a command line that work on the same files.
class TwoFaces : public GuiRig {
public:
    TwoFaces() {
        qputenv("QUAV_TOOLS_DIR", QFile::encodeName(toolsDir.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(path(u"config"_s)));
        flac(u"good.flac"_s, {.frames = 3000});
        wav(u"a.wav"_s, {.frames = 3000});
        noFlac(u"bad.flac"_s);
        written(u"bad.wav"_s, "RIFF and nothing else");
        const QString unset = flac(u"unset.flac"_s, {.frames = 3000});
        QFile file(unset);
        constexpr qint64 md5InStreamInfo = 26;
        if (file.open(QIODevice::ReadWrite) && file.seek(md5InStreamInfo)) {
            file.write(QByteArray(16, '\0'));
        }
        written(u"list.md5"_s,
                QByteArray(32, '0') + " *good.flac\n" + QByteArray(32, '0') + " *gone.flac\n");
        encode.options().set(encode.rows().verifyAudio, true);
    }

    /// Holds the tool of a run until all of it has been cancelled.
    void holdFlac() { gate_.emplace(*this, u"flac"_s, u":"_s, u"exec \"$real\" \"$@\""_s); }

    Told inWindow(const QString& command, const QStringList& files) {
        BaseTab& tab = tabOf(command);
        quav::test::addFiles(tab, paths(files));
        QSignalSpy idle(&queue, &QUAVTaskQueue::becameIdle);
        press(tab);
        cancelHeld([this] { queue.cancelAllTasks(); });
        [&] { QTRY_COMPARE(idle.count(), 1); }();
        Told told{window.findChild<SummaryLine*>()->line(), {}, queue.warnings(), {}};
        opened = outputWindows.windows().size();
        if (shown<QPushButton>(window, "Show failures")) {
            press(window, "Show failures");
            const QString text = outputWindows.windows().back()->text();
            told.failures = text.left(text.indexOf(u"\n\n")).split(u'\n', Qt::SkipEmptyParts);
            toldWithWords = text;
        }
        return told;
    }

    QByteArray inTerminal(const QString& command, const QStringList& files, bool json) {
        QStringList arguments = command.split(u' ') + QStringList{u"--jobs"_s, u"1"_s};
        if (!command.startsWith(u"checksum")) {
            arguments << u"--output"_s << path(u"out of the terminal, JSON %1"_s.arg(int(json)));
            QDir().mkpath(arguments.last());
        }
        if (json) {
            arguments << u"--json"_s;
        }
        QProcess process;
        process.start(QStringLiteral(QUAV_CLI), arguments + paths(files));
        QByteArray errors;
        cancelHeld([&] {
            ::kill(pid_t(process.processId()), SIGINT);
            QTRY_VERIFY((errors += process.readAllStandardError()).contains("Cancelled."));
        });
        process.waitForFinished(patience);
        return json ? process.readAllStandardOutput() : errors + process.readAllStandardError();
    }

    size_t opened = 0;     ///< windows that opened by themselves
    QString toldWithWords; ///< all that the failures' window says

private:
    BaseTab& tabOf(const QString& command) {
        if (command.startsWith(u"checksum")) {
            const bool tests = command.endsWith(u"test");
            checksum.options().set(checksumOptions().command,
                                   tests ? ChecksumCommand::Test : ChecksumCommand::Verify);
            return checksum;
        }
        return command.startsWith(u"encode") ? static_cast<BaseTab&>(encode) : decode;
    }

    QStringList paths(QStringList files) const {
        for (QString& file : files) {
            file = path(file);
        }
        return files;
    }

    void cancelHeld(const std::function<void()>& cancel) {
        if (gate_) {
            ++held_;
            QTRY_COMPARE(gate_->runs(), held_);
            cancel();
            gate_->open(1);
        }
    }

    std::optional<Gate> gate_;
    int held_ = 0;
};

Told fromText(const QByteArray& errors) {
    Told told;
    for (const QString& line : QString::fromUtf8(errors).split(u'\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(u"failed: ")) {
            told.failures << line.mid(8);
        } else if (line.startsWith(u"warning: ")) {
            told.warnings << line.mid(9);
        }
        told.summary = line.left(line.indexOf(u", time "));
    }
    return told;
}

Told fromJson(const QByteArray& output) {
    Told told;
    for (const QByteArray& line : output.trimmed().split('\n')) {
        const QJsonObject event = QJsonDocument::fromJson(line).object();
        TaskReport task;
        task.name = event[u"title"_s].toString();
        if (const QString error = event[u"error"_s].toString(); !error.isEmpty()) {
            told.failures << task.name + u": "_s + task.withoutName(error);
        }
        if (event[u"event"_s] == u"finished"_s) {
            for (const QJsonValue& warning : event[u"warnings"_s].toArray()) {
                told.warnings << task.name + u": "_s + task.withoutName(warning.toString());
            }
            for (const QJsonValue& file : event[u"written"_s].toArray()) {
                told.summary += QFile::exists(file.toString()) ? u"written "_s : u"lost "_s;
            }
            told.summary += event.contains(u"proven"_s) ? u"proven "_s : QString();
        } else if (event[u"verdict"_s].isString() && event[u"verdict"_s] != u"ok"_s) {
            told.badFiles << event[u"file"_s].toString();
        } else if (event[u"event"_s] == u"summary"_s) {
            const QJsonObject files = event[u"files"_s].toObject();
            for (const auto& key : {u"done"_s, u"failed"_s, u"cancelled"_s, u"warnings"_s}) {
                told.summary += QString::number(event[key].toInt()) + u' ';
            }
            for (const auto& key : {u"ok"_s, u"failed"_s, u"missing"_s, u"unreadable"_s}) {
                told.summary += QString::number(files[key].toInt());
            }
        }
    }
    return told;
}

} // namespace

class OneResultTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void windowTerminalAndJsonTellTheSame_data() {
        columns<QString, QStringList, int, QString, QString, QString>("command", "files", "opened",
                                                                      "window", "terminal", "json");
        const QString encode = u"encode --to flac --verify-audio"_s;
        const QString decode = u"decode --to wav"_s;
        const QStringList wav{u"a.wav"_s};
        const QStringList bad{u"bad.flac"_s};
        const QStringList both{u"a.wav"_s, u"bad.wav"_s};
        row("success", encode, wav, 0, u"1 task is done. 1 output has the sound of its original."_s,
            u"1 done, 0 failed, 0 cancelled, 1 with the sound of the original, warnings: 0"_s,
            u"written proven 1 0 0 0 0000"_s);
        row("success with warnings", u"checksum test"_s, QStringList{u"unset.flac"_s}, 1,
            u"1 task is done."_s,
            u"1 ok, 0 failed, 0 missing, 0 could not be read; tasks: 1 done, warnings: 1"_s,
            u"1 0 0 1 1000"_s);
        row("failure", decode, bad, 1, u"1 task failed: bad.flac"_s,
            u"0 done, 1 failed, 0 cancelled, warnings: 0"_s, u"0 1 0 0 0000"_s);
        row("cancelled", decode, QStringList{u"good.flac"_s, u"unset.flac"_s}, 0,
            u"2 tasks were canceled."_s, u"0 done, 0 failed, 2 cancelled, warnings: 0"_s,
            u"written 0 0 2 0 0000"_s);
        row("mismatches", u"checksum verify"_s, QStringList{u"list.md5"_s}, 1,
            u"1 task is done. 1 file is damaged. 1 file is missing."_s,
            u"0 ok, 1 failed, 1 missing, 0 could not be read; tasks: 1 done, warnings: 0"_s,
            u"1 0 0 0 0110"_s);
        row("one success hides the set's report", encode, both, 0,
            u"1 task failed: bad.wav · 1 task is done. 1 output has the sound of its original."_s,
            u"1 done, 1 failed, 0 cancelled, 1 with the sound of the original, warnings: 0"_s,
            u"written proven 1 1 0 0 0000"_s);
    }
    void windowTerminalAndJsonTellTheSame() {
        QFETCH(QString, command);
        QFETCH(QStringList, files);
        TwoFaces faces;
        if (QLatin1StringView(QTest::currentDataTag()) == "cancelled"_L1) {
            faces.holdFlac();
        }
        const Told window = faces.inWindow(command, files);
        const Told terminal = fromText(faces.inTerminal(command, files, false));
        const Told json = fromJson(faces.inTerminal(command, files, true));
        QTEST(window.summary, "window");
        QTEST(terminal.summary, "terminal");
        QTEST(json.summary, "json");
        QTEST(int(faces.opened), "opened");
        QCOMPARE(terminal.failures, json.failures);
        QCOMPARE(terminal.warnings, json.warnings);
        QCOMPARE(window.warnings, json.warnings);
        QCOMPARE(window.failures.size(), json.failures.size() + json.badFiles.size());
        QCOMPARE(window.failures.first(json.failures.size()), json.failures);
        for (const QString& file : json.badFiles) {
            QVERIFY2(window.failures.filter(file + u": "_s).size() == 1, qPrintable(file));
        }
        const bool fails = files.last().startsWith(u"bad.");
        QCOMPARE(faces.toldWithWords.contains(u"\n\n"_s + files.last() + u'\n'), fails);

        // They can be shown still when their rows have gone.
        faces.queue.removeAllErrors();
        QCOMPARE(faces.queue.failures().empty(), window.failures.isEmpty());
    }
};

QTEST_MAIN(OneResultTest)
#include "OneResultTest.moc"
