// The time from starting the program to its window's first paint, warm, against a program that
// shows one empty widget. The program measures itself from outside: it runs itself as a child.

#include "gui/Application.h"
#include "support/Figures.h"

#include <QApplication>
#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <algorithm>

using namespace quav;

namespace {

constexpr int runs = 7;
constexpr double barMilliseconds = 400;

/// Ends the program when it has been painted.
class EmptyWindow : public QWidget {
protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QTimer::singleShot(0, this, [] { QCoreApplication::exit(0); });
    }
};

int showEmptyWindow(int& argc, char** argv) {
    const QApplication application(argc, argv);
    EmptyWindow window;
    window.resize(900, 600);
    window.show();
    return QApplication::exec();
}

int showProgram(int& argc, char** argv) {
    return runApplication(argc, argv, [](MainWindow&) { QCoreApplication::exit(0); });
}

/// The best of several runs, the first of which only warms the caches.
double timeToFirstPaint(const QString& program, const QString& configuration, const char* part) {
    double best = 0;
    for (int run = 0; run < runs; ++run) {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configuration);
        environment.insert(QStringLiteral("QUAV_BENCH_PART"), QString::fromLatin1(part));
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        const double time = bench::millisecondsOf([&] {
            child.start(program, QStringList());
            child.waitForFinished(-1);
        });
        if (child.exitCode() != 0) {
            qFatal("the window did not come up");
        }
        best = run <= 1 ? time : std::min(best, time);
    }
    return best;
}

} // namespace

int main(int argc, char** argv) {
    const QByteArray part = qgetenv("QUAV_BENCH_PART");
    if (part == "program") {
        return showProgram(argc, argv);
    }
    if (part == "empty") {
        return showEmptyWindow(argc, argv);
    }
    const QCoreApplication application(argc, argv);
    const QTemporaryDir configuration;
    const QString self = QCoreApplication::applicationFilePath();
    const double empty = timeToFirstPaint(self, configuration.path(), "empty");
    const double program = timeToFirstPaint(self, configuration.path(), "program");
    return bench::report("start to first paint, warm", program, empty, "empty widget",
                         barMilliseconds)
               ? 0
               : 1;
}
