#include "fuzzer_process.h"

#include "lifecycle_rules.h"
#include "require.h"

#include <manual_event_dispatcher.h>
#include <watched_plugin.h>

#include <QCoreApplication>

namespace {

int messages = 0;

void countMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    Q_UNUSED(context)
    require(type != QtFatalMsg, qPrintable(text));
    ++messages;
}

} // namespace

ManualScheduler& fuzzerTime()
{
    static ManualScheduler scheduler;
    return scheduler;
}

void beginInput()
{
    settle();
    fuzzerTime().restart();
}

const IPlugin& watchedPlugin()
{
    static CommandRules rules;
    static const WatchedPlugin prototype(&rules);
    return prototype;
}

int loggedMessages()
{
    return messages;
}

void settle()
{
    constexpr int longestChain = 10000; // each pass leaves to the next what it posts itself
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    for (int pass = 0; pass < longestChain && dispatcher->hasPendingEvents(); ++pass) {
        dispatcher->processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    require(!dispatcher->hasPendingEvents(), "the event loop comes to rest");
}

void passTime(qint64 milliseconds)
{
    constexpr qint64 usPerMs = 1000;
    fuzzerTime().advance(milliseconds * usPerMs);
    QCoreApplication::processEvents();
}

/// Called once by the fuzzer, before the first input.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    Q_UNUSED(argc)
    keepReports();
    qputenv("QT_LOGGING_RULES", "*=true");
    qInstallMessageHandler(countMessage);
    QCoreApplication::setEventDispatcher(new ManualEventDispatcher(&fuzzerTime()));
    static int ownArguments = 1; // the fuzzer's arguments are none of Qt's business
    static QCoreApplication application(ownArguments, *argv);
    return 0;
}
