#include "serve.h"

#include <process/exit_status.h>
#include <process/unix_signals.h>

#include <QEventLoop>

int serveBench(const Bench& bench, const RigServerSetup& setup, const RigForms& forms, Output* output)
{
    UnixSignals unixSignals;
    RigServer server(bench, setup, forms);
    QEventLoop loop;
    int status = ExitSuccess;
    QObject::connect(&server, &RigServer::served, &loop, [&] {
        output->write(
            [&] {
                return Json{{"type", "serving"},
                            {"rig", toJson(setup.broker.rig)},
                            {"broker", toJson(setup.broker.text())}};
            },
            [&] { return QStringLiteral("serving %1 on %2").arg(setup.broker.rig, setup.broker.text()); });
    });
    QObject::connect(&server, &RigServer::replaced, &loop, [&] {
        status = ExitReplaced;
        loop.quit();
    });
    QObject::connect(&unixSignals, &UnixSignals::interrupted, &loop, &QEventLoop::quit);
    server.begin();
    loop.exec();
    server.end();
    return status;
}
