#include "gui/SingleInstance.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QSignalSpy>
#include <QTest>

#include <future>
#include <memory>

using namespace quav;
using namespace Qt::StringLiterals;

namespace {

QDBusConnection newConnection(const QString& name) {
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
}

/// What another start of the program does, on a connection and a thread of its own.
struct LaterStart {
    bool claimed = false;
    bool handedOver = false;
};

LaterStart startLater(const QStringList& files, const QString& tab) {
    static int number = 0;
    const QString name = u"later-%1"_s.arg(++number);
    auto started = std::async(std::launch::async, [&] {
        SingleInstance instance(newConnection(name));
        const bool claimed = instance.claim();
        return LaterStart{claimed, !claimed && instance.handOver(files, tab)};
    });
    const auto ended = [&] {
        return started.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    if (!QTest::qWaitFor(ended)) {
        qWarning("The later start does not end");
    }
    LaterStart result = started.get();
    QDBusConnection::disconnectFromBus(name);
    return result;
}

} // namespace

class SingleInstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aLaterStartHandsItsFilesOver();
    void aLaterStartWithoutFilesBringsTheWindowToTheFront();
    void aLaterStartSelectsItsTab();
    void theActivationTokenComesAlong();
    void afterTheEndTheNameIsFree();
    void callsThatMakeNoSenseAreRefused();
    void withoutABusEveryStartIsTheFirst();

private:
    std::unique_ptr<SingleInstance> first_;
    std::unique_ptr<QSignalSpy> activated_;
    std::unique_ptr<QSignalSpy> tabs_;
    std::unique_ptr<QSignalSpy> files_;
};

void SingleInstanceTest::init() {
    first_ = std::make_unique<SingleInstance>();
    activated_ = std::make_unique<QSignalSpy>(first_.get(), &SingleInstance::activated);
    tabs_ = std::make_unique<QSignalSpy>(first_.get(), &SingleInstance::tabRequested);
    files_ = std::make_unique<QSignalSpy>(first_.get(), &SingleInstance::filesOpened);
    QVERIFY2(QDBusConnection::sessionBus().isConnected(), "Run this under dbus-run-session");
    QVERIFY(first_->claim());
}

void SingleInstanceTest::cleanup() {
    first_->release();
}

void SingleInstanceTest::aLaterStartHandsItsFilesOver() {
    const QStringList files{u"/music/Größe #1 50%.flac"_s, u"/music/b.flac"_s};
    const LaterStart later = startLater(files, {});
    QVERIFY(!later.claimed);
    QVERIFY(later.handedOver);
    QCOMPARE(files_->size(), 1);
    QCOMPARE(files_->first().first().toStringList(), files);
    QCOMPARE(activated_->size(), 1);
    QVERIFY(tabs_->isEmpty());
}

void SingleInstanceTest::aLaterStartWithoutFilesBringsTheWindowToTheFront() {
    QVERIFY(startLater({}, {}).handedOver);
    QCOMPARE(activated_->size(), 1);
    QVERIFY(files_->isEmpty());
}

void SingleInstanceTest::aLaterStartSelectsItsTab() {
    QVERIFY(startLater({u"/a.wav"_s}, u"encode"_s).handedOver);
    QCOMPARE(tabs_->size(), 1);
    QCOMPARE(tabs_->first().first().toString(), u"encode"_s);
    QCOMPARE(files_->size(), 1);
}

void SingleInstanceTest::theActivationTokenComesAlong() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"quav.Workbench"_s, u"/quav/Workbench"_s, u"org.freedesktop.Application"_s, u"Activate"_s);
    call << QVariantMap{{u"activation-token"_s, u"token-7"_s}};
    newConnection(u"desktop"_s).asyncCall(call);
    QTRY_COMPARE(activated_->size(), 1);
    QCOMPARE(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), u"token-7"_s);
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

void SingleInstanceTest::afterTheEndTheNameIsFree() {
    first_->release();
    QVERIFY(startLater({}, {}).claimed);
}

void SingleInstanceTest::callsThatMakeNoSenseAreRefused() {
    QDBusMessage call = QDBusMessage::createMethodCall(u"quav.Workbench"_s, u"/quav/Workbench"_s,
                                                       u"org.freedesktop.Application"_s, u"Open"_s);
    call << 7;
    QDBusPendingCallWatcher watcher(newConnection(u"stranger"_s).asyncCall(call));
    QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
    QVERIFY(finished.wait());
    QVERIFY(watcher.isError());
    QVERIFY(files_->isEmpty());
}

void SingleInstanceTest::withoutABusEveryStartIsTheFirst() {
    SingleInstance alone(QDBusConnection(u"no such connection"_s));
    QVERIFY(alone.claim());
    alone.release();
}

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
