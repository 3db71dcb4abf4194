#include "gui/Application.h"

#include "gui/GuiPrompts.h"
#include "gui/MainWindow.h"
#include "gui/OutputWindows.h"
#include "gui/SingleInstance.h"
#include "gui/StatusPanel.h"
#include "platform/BackgroundWork.h"
#include "platform/DBusDesktop.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/StopSignals.h"
#include "platform/Translations.h"
#include "platform/Version.h"
#include "workbench/Workbench.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace quav {

namespace {

constexpr int wrongUsage = 2;

struct StartOptions {
    QString tab; ///< as it was typed; empty when none was asked for
    QStringList files;
};

void nameApplication() {
    QApplication::setApplicationName(QStringLiteral("quav"));
    // No display name: it would be added to every window's title, and there is not much room.
    QApplication::setApplicationVersion(shortVersion());
    QApplication::setDesktopFileName(applicationId());
    QApplication::setWindowIcon(QIcon::fromTheme(applicationId()));
    // Closing the last window ends nothing: the tools that run are waited for.
    QApplication::setQuitOnLastWindowClosed(false);
}

/// Ends the program itself for --help, --version and options that do not exist.
StartOptions readArguments(const QApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QApplication::translate("Application", "A workbench for people who keep music without "
                                               "loss."));
    const QCommandLineOption tab(QStringLiteral("tab"),
                                 QApplication::translate("Application", "Select the tab LABEL."),
                                 QStringLiteral("LABEL"));
    parser.addOption(tab);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(
        QStringLiteral("files"),
        QApplication::translate("Application", "Files and folders to add to the tab's list."),
        QStringLiteral("[files...]"));
    parser.process(application);

    QStringList files;
    const QStringList given = parser.positionalArguments();
    std::transform(given.begin(), given.end(), std::back_inserter(files), fullPath);
    return {parser.value(tab), files};
}

/// The label as it is written, whatever capitals were used; empty for no such tab.
QString knownLabel(const QUAVController& controller, const QString& label) {
    const QStringList labels = controller.tabLabels();
    const auto found = std::find_if(labels.begin(), labels.end(), [&](const QString& known) {
        return known.compare(label, Qt::CaseInsensitive) == 0;
    });
    return found == labels.end() ? QString() : *found;
}

void complainAboutTab(const QString& label, const QStringList& labels) {
    QTextStream(stderr) << QApplication::translate("Application",
                                                   "quav: there is no tab “%1”; there are: %2")
                               .arg(label, labels.join(QStringLiteral(", ")))
                        << Qt::endl;
}

void obeyLaterStarts(SingleInstance& instance, MainWindow& window, QUAVController& controller) {
    QObject::connect(&instance, &SingleInstance::activated, &window, &MainWindow::bringToFront);
    QObject::connect(&instance, &SingleInstance::tabRequested, &window,
                     [&controller](const QString& label) {
                         controller.selectTab(knownLabel(controller, label));
                     });
    QObject::connect(&instance, &SingleInstance::filesOpened, &window,
                     [&controller](const QStringList& files) { controller.addFiles(files); });
}

/// A start after one that was killed: its half outputs go, on a thread, since disks may be slow.
void cleanUpAfterDeadRuns(const ClaimedFolders& claims, BackgroundWork& work,
                          OutputWindows& windows) {
    const auto sentences = std::make_shared<QStringList>();
    work.run([&claims, sentences] { *sentences = claims.recover(); },
             [&windows, sentences] {
                 if (!sentences->isEmpty()) {
                     windows.show(sentences->join(u'\n') + u'\n',
                                  QApplication::translate("Application", "Cleaned Up"));
                 }
             });
}

} // namespace

int runApplication(int& argc, char** argv, const std::function<void(MainWindow&)>& whenReady) {
    QApplication application(argc, argv);
    nameApplication();
    const Translations translations;
    const StartOptions options = readArguments(application);

    Settings settings(Settings::userFile());
    DBusDesktop desktop;
    GuiPrompts prompts;
    Workbench workbench(settings, prompts, desktop, ToolsFolder(ToolsFolder::standardFolder()));
    QUAVController& controller = workbench.controller();
    const QString label = knownLabel(controller, options.tab);
    if (!options.tab.isEmpty() && label.isEmpty()) {
        complainAboutTab(options.tab, controller.tabLabels());
        return wrongUsage;
    }

    SingleInstance instance;
    if (!instance.claim() && instance.handOver(options.files, label)) {
        return 0;
    }
    controller.selectTab(label);

    OutputWindows outputWindows(prompts);
    StatusPanel panel(workbench.queue(), outputWindows);
    MainWindow window(workbench, panel, outputWindows);
    prompts.setParentWindow(&window);
    QObject::connect(&workbench.queue(), &QUAVTaskQueue::outputWindowRequested, &outputWindows,
                     &OutputWindows::show);
    QObject::connect(&desktop, &DBusDesktop::attentionRequested, &window,
                     [&window] { QApplication::alert(&window); });
    QObject::connect(&window, &MainWindow::finishing, &instance, &SingleInstance::release);
    QObject::connect(&window, &MainWindow::finishing, &outputWindows, &OutputWindows::showNoMore);
    QObject::connect(
        &window, &MainWindow::finished, &application, [] { QApplication::exit(0); },
        Qt::QueuedConnection);
    obeyLaterStarts(instance, window, controller);
    const StopSignals stopSignals;
    QObject::connect(&stopSignals, &StopSignals::stopRequested, &window, &MainWindow::endAtOnce);

    QObject::connect(
        &window, &MainWindow::firstPainted, &window,
        [&] {
            if (whenReady) {
                whenReady(window);
            }
            if (!settings.damage().isEmpty()) {
                prompts.alert(settings.damage(), {});
            }
            if (!options.files.isEmpty()) {
                controller.addFiles(options.files);
            }
        },
        Qt::QueuedConnection);
    BackgroundWork recovery(workbench.queue().mainThread());
    QObject::connect(
        &window, &MainWindow::firstPainted, &window,
        [&] { cleanUpAfterDeadRuns(workbench.claims(), recovery, outputWindows); },
        Qt::QueuedConnection);
    window.show();
    return QApplication::exec();
}

} // namespace quav
