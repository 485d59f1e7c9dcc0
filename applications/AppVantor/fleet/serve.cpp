#include "serve.h"

#include <process/exit_status.h>
#include <process/unix_signals.h>

#include <QEventLoop>

int waitForEnd(const RigServer& server, Output* output)
{
    const UnixSignals unixSignals;
    QEventLoop loop;
    int status = ExitSuccess;
    QObject::connect(&server, &RigServer::served, &loop, [&] {
        const BrokerAddress& at = server.address();
        output->write(
            [&] {
                return Json{{"type", "serving"}, {"rig", toJson(at.rig)}, {"broker", toJson(at.text())}};
            },
            [&] { return QStringLiteral("serving %1 on %2").arg(at.rig, at.text()); });
    });
    QObject::connect(&server, &RigServer::replaced, &loop, [&] {
        status = ExitReplaced;
        loop.quit();
    });
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &loop, &QEventLoop::quit);
    loop.exec();
    return status;
}
