#pragma once

#include "bench_process.h"

#include <QTemporaryDir>

/// A mosquitto of the test's own, on a free port of the loopback address; or, for a trial, what the variable
/// FLEET_BROKER names: a program that is started with the port and a folder, and lets in whoever has a name.
class Broker
{
public:
    /// Starts one with further lines of configuration; "$DIR" in them is its folder, which files may have
    /// been put into with add. Without any it lets everybody in.
    explicit Broker(const QByteArray& configuration = "allow_anonymous true\n");
    ~Broker();
    Q_DISABLE_COPY(Broker)

    /// Writes a file into the folder of brokers that are started later.
    static void add(const QString& name, const QByteArray& text);
    static QString file(const QString& name);

    void start();
    /// As a crash would: what it holds in memory is gone.
    void kill();
    void send(int signal);
    int port() const { return m_port; }
    /// Whom the clients of the test come as, with the user's name as password.
    void comeAs(const QString& user) { m_user = user; }
    const QString& user() const { return m_user; }
    /// Its address, with a rig.
    QString url(const QString& rig = "bench-7"_s) const;

private:
    BenchChild m_process;
    int m_port = 0;
    QString m_user;
    QString m_file;
};

/// A bench that is put on broker as "bench-7"; it is there when this returns.
class ServedBench : public BenchProcess
{
public:
    explicit ServedBench(const Broker& broker, const QStringList& options = {});
    /// Sends it away, and waits for its end.
    BenchRun leave();
};
