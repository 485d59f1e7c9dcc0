#include "broker_client.h"
#include "rows.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <csignal>

/// What a broker asks of a rig, and a rig of a broker.
class TestSecurity : public QObject
{
    Q_OBJECT

    /// Runs openssl in the folder of the brokers.
    static void openssl(const QString& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(QFileInfo(Broker::file("x"_s)).path());
        process.start("openssl"_s, arguments.split(QLatin1Char(' ')));
        QVERIFY(process.waitForFinished());
        QVERIFY2(process.exitCode() == 0, process.readAllStandardError());
    }

    /// Makes a certificate that authority signs, for these names and days.
    static void certificate(const QString& name, const QString& authority, const QByteArray& names,
                            const QString& days)
    {
        Broker::add("names"_s, "subjectAltName=" + names + "\n");
        openssl(
            "req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout %1.key -out %1.csr -subj /CN=%1"_s
                .arg(name));
        openssl(
            "x509 -req -in %1.csr -CA %2.crt -CAkey %2.key -CAcreateserial -days %3 -out %1.crt -extfile names"_s
                .arg(name, authority, days));
    }

    static BenchRun tryToServe(const QStringList& options, const QByteArray& text)
    {
        BenchProcess bench(QStringList{"serve"_s} + options);
        BenchRun run;
        QElapsedTimer clock;
        for (clock.start(); !(run.errors + run.output).contains(text) && clock.elapsed() < 20000;) {
            bench.process().waitForFinished(20);
            run.errors += bench.process().readAllStandardError();
            run.output += bench.process().readAllStandardOutput();
        }
        return run;
    }

private Q_SLOTS:
    void initTestCase()
    {
        for (const char* name : {"lab", "stranger"}) {
            openssl(
                "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 9 -keyout %1.key -out %1.crt -subj /CN=%1"_s
                    .arg(QLatin1String(name)));
        }
        certificate("good"_s, "lab"_s, "IP:127.0.0.1", "9"_s);
        certificate("elsewhere"_s, "lab"_s, "DNS:other.example", "9"_s);
        certificate("named"_s, "lab"_s, "DNS:localhost", "9"_s);
        certificate("old"_s, "lab"_s, "IP:127.0.0.1", "-1"_s);
        certificate("rig"_s, "lab"_s, "DNS:rig", "9"_s);
    }

    void onlyTheRightCertificateIsTrusted_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("authority");
        QTest::addColumn<QByteArray>("outcome");
        QTest::newRow("the right one") << "good"_s
                                       << "lab"_s << QByteArray("serving bench-7 on mqtts://127.0.0.1");
        QTest::newRow("of another authority")
            << "good"_s
            << "stranger"_s << QByteArray("its certificate is refused: self-signed certificate");
        QTest::newRow("of another host")
            << "elsewhere"_s
            << "lab"_s << QByteArray("its certificate is refused: IP address mismatch");
        QTest::newRow("one that has run out")
            << "old"_s
            << "lab"_s << QByteArray("its certificate is refused: certificate has expired");
    }
    void onlyTheRightCertificateIsTrusted()
    {
        QFETCH(QString, shown);
        QFETCH(QString, authority);
        QFETCH(QByteArray, outcome);
        const Broker broker("allow_anonymous true\ncafile $DIR/lab.crt\ncertfile $DIR/" + shown.toUtf8() +
                            ".crt\nkeyfile $DIR/" + shown.toUtf8() + ".key\n");
        const BenchRun run = tryToServe({"--broker"_s, broker.url().replace("mqtt:"_s, "mqtts:"_s), "--ca"_s,
                                         Broker::file(authority + ".crt"_s)},
                                        outcome);
        QVERIFY2((run.output + run.errors).contains(outcome), run.output + run.errors);
    }

    void aCertificateIsTrustedByItsName_data()
    {
        const Rows<QString, QByteArray> row("shown", "outcome");
        row("of the name", "named", "serving bench-7 on mqtts://localhost");
        row("of the number", "good", "its certificate is refused: hostname mismatch");
    }
    void aCertificateIsTrustedByItsName()
    {
        const auto [shown, outcome] = Rows<QString, QByteArray>::values();
        const Broker broker("allow_anonymous true\ncafile $DIR/lab.crt\ncertfile $DIR/" + shown.toUtf8() +
                            ".crt\nkeyfile $DIR/" + shown.toUtf8() + ".key\n");
        const BenchRun run = tryToServe({"--broker"_s, "mqtts://localhost:%1/bench-7"_s.arg(broker.port()),
                                         "--ca"_s, Broker::file("lab.crt"_s)},
                                        outcome);
        QVERIFY2((run.output + run.errors).contains(outcome), run.output + run.errors);
    }

    void aBrokerThatIsEndedInTheHandshakeIsTriedAgain()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        BenchProcess bench({"serve"_s, "--broker"_s,
                            "mqtts://127.0.0.1:%1/bench-7"_s.arg(silent.serverPort()), "--ca"_s,
                            Broker::file("lab.crt"_s)});
        for (int times = 0; times < 2; ++times) {
            QVERIFY(silent.waitForNewConnection(20000));
            QTcpSocket* socket = silent.nextPendingConnection();
            QVERIFY(socket->waitForReadyRead(20000)); // the client's hello
            delete socket;
        }
        bench.send(SIGTERM);
        const BenchRun run = bench.end();
        QCOMPARE(run.status, 0);
        QVERIFY2(run.errors.contains("it is tried again"), run.errors);
    }

    void aBrokerThatWantsACertificateGetsIt()
    {
        const Broker broker("allow_anonymous true\nrequire_certificate true\ncafile $DIR/lab.crt\ncertfile "
                            "$DIR/good.crt\nkeyfile $DIR/good.key\n");
        const QStringList options = {"--broker"_s, broker.url().replace("mqtt:"_s, "mqtts:"_s), "--ca"_s,
                                     Broker::file("lab.crt"_s)};
        BenchRun run = tryToServe(options + QStringList{"--cert"_s, Broker::file("rig.crt"_s), "--key"_s,
                                                        Broker::file("rig.key"_s)},
                                  "serving");
        QVERIFY2(run.output.contains("serving"), run.errors);
        run = tryToServe(options, "it is tried again");
        QVERIFY2(run.errors.contains("certificate required") || run.errors.contains("it is tried again"),
                 run.errors);
        QVERIFY(!run.output.contains("serving"));
    }

    void theDocumentedAccessListKeepsEachToItsOwn()
    {
        const QByteArray document = contentOf(QStringLiteral(FLEET_DOCUMENT));
        const int start = document.indexOf("# a rig speaks");
        Broker::add("access"_s, "pattern readwrite hello\npattern readwrite answers/here\n" +
                                    document.mid(start, document.indexOf("```", start) - start));
        Broker::add("users"_s, "");
        for (const char* user : {"bench-7", "bench-8", "wall", "ada"}) {
            QProcess passwords;
            const QString name = QString::fromLatin1(user);
            passwords.start("mosquitto_passwd"_s, {"-b"_s, Broker::file("users"_s), name, name});
            QVERIFY(passwords.waitForFinished());
        }
        Broker broker("password_file $DIR/users\nacl_file $DIR/access\n");
        Broker::add("rig"_s, "bench-7:bench-7\n");
        ServedBench bench(broker, {"--login"_s, Broker::file("rig"_s)});
        const QString order = "appvantor/1/bench-7/order"_s;
        const QString answer = "appvantor/1/bench-7/answer/me"_s;
        const QByteArray setting = R"({"command":"setValue","arguments":{"channel":"START","state":"ON"}})";
        broker.comeAs("wall"_s);
        Reader reader(broker, "appvantor/#"_s);
        QVERIFY(!reader.waitFor("appvantor/1/bench-7/state", "online").isEmpty());
        publish(broker, order, setting);
        publish(broker, "appvantor/1/bench-7/line/line0/set"_s, "1");
        QVERIFY(ask(broker, "appvantor/1/bench-7/history"_s, R"({"from":0})", answer).contains("levels"));
        broker.comeAs("bench-8"_s);
        publish(broker, "appvantor/1/bench-7/state"_s, "a lie");
        publish(broker, order, setting);
        broker.comeAs("ada"_s);
        const QByteArray question = R"({"instruction":"getValue","arguments":{"channel":"line0"}})";
        QVERIFY(ask(broker, order, question, answer).contains("\"value\":0"));
        QVERIFY(ask(broker, order, setting, answer).contains("result"));
        QVERIFY(!reader.waitFor("appvantor/1/bench-7/line/line0", "\"v\":1").isEmpty());
        QVERIFY(!reader.messages("appvantor/1/bench-7/state").contains("a lie"));
    }

    void aFileThatIsNotThereIsToldAtOnce_data()
    {
        const Rows<QString> row("option");
        for (const char* option : {"--ca", "--cert", "--key", "--login"}) {
            row(option, option);
        }
    }
    void aFileThatIsNotThereIsToldAtOnce()
    {
        QFETCH(QString, option);
        const BenchRun run =
            runBench({"serve"_s, "--broker"_s, "mqtts://127.0.0.1/rig"_s, option, "/none.crt"_s});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("/none.crt cannot be read: No such file"), run.errors);
    }

    void whatTheAccessListForbidsIsTold()
    {
        Broker::add("access"_s, "topic read nothing\n");
        const Broker broker("allow_anonymous true\nacl_file $DIR/access\n");
        const QByteArray told = "it does not take \"appvantor/1/bench-7/state\": Not authorized";
        const BenchRun run = tryToServe({"--broker"_s, broker.url()}, told);
        QVERIFY2(run.errors.contains(told), run.errors);
    }

    void whatIsTooLargeForTheBrokerIsTold()
    {
        const Broker broker("allow_anonymous true\nmax_packet_size 2000\n");
        const QByteArray told = "it does not take \"appvantor/1/bench-7/description\": ";
        const BenchRun run = tryToServe({"--broker"_s, broker.url()}, told);
        QVERIFY2(run.errors.contains(told), run.errors);
    }

    void aPasswordComesFromAFile()
    {
        QProcess passwords;
        Broker::add("passwords"_s, "");
        passwords.start("mosquitto_passwd"_s, {"-b"_s, Broker::file("passwords"_s), "rig"_s, "se:cret"_s});
        QVERIFY(passwords.waitForFinished());
        const Broker broker("password_file $DIR/passwords\n");
        Broker::add("login"_s, "rig:se:cret\n");
        Broker::add("wrong"_s, "rig:guess\n");
        Broker::add("empty"_s, "rig\n");
        const QStringList address = {"--broker"_s, broker.url(), "--login"_s};
        QVERIFY(
            tryToServe(address + QStringList{Broker::file("login"_s)}, "serving").output.contains("serving"));
        QVERIFY(tryToServe(address + QStringList{Broker::file("wrong"_s)}, "it refuses: Not authorized")
                    .errors.contains("it refuses: Not authorized"));
        const BenchRun run =
            runBench(QStringList{"serve"_s} + address + QStringList{Broker::file("empty"_s)});
        QCOMPARE(run.status, 2);
        QVERIFY2(run.errors.contains("expected USER:PASSWORD in the first line"), run.errors);
    }
};

QTEST_GUILESS_MAIN(TestSecurity)
#include "test_security.moc"
