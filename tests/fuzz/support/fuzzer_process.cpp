#include "fuzzer_process.h"

#include "require.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace {

int messages = 0;

void countMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    Q_UNUSED(context)
    Q_UNUSED(text)
    require(type != QtFatalMsg, "nothing fatal is logged");
    ++messages;
}

} // namespace

int loggedMessages()
{
    return messages;
}

void settle()
{
    constexpr int longestChain = 10000; // each pass leaves to the next what it posts itself
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    for (int pass = 0; pass < longestChain && dispatcher->hasPendingEvents(); ++pass) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    require(!dispatcher->hasPendingEvents(), "the event loop comes to rest");
}

/// Called once by the fuzzer, before the first input.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    Q_UNUSED(argc)
    qputenv("QT_NO_GLIB", "1"); // the event loop whose waiting virtual time replaces
    qputenv("QT_LOGGING_RULES", "*=true");
    qInstallMessageHandler(countMessage);
    static int ownArguments = 1; // the fuzzer's arguments are none of Qt's business
    static QCoreApplication application(ownArguments, *argv);
    return 0;
}
