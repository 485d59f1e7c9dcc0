#include "junit_report.h"

#include "shell.h"

#include <process/write_all.h>

#include <QDateTime>
#include <QFileInfo>
#include <QSysInfo>
#include <QXmlStreamWriter>

#include <algorithm>

namespace {

/// What XML cannot hold in any way is replaced.
QString plain(QString text)
{
    constexpr ushort firstPrintable = 0x20;
    for (QChar& character : text) {
        const bool isBlank = character == QLatin1Char('\t') || character == QLatin1Char('\n');
        if ((character.unicode() < firstPrintable && !isBlank) || character.isSurrogate() ||
            character.isNonCharacter()) {
            character = QChar::ReplacementCharacter;
        }
    }
    return text;
}

QString seconds(double time)
{
    constexpr int decimals = 3;
    return QString::number(time, 'f', decimals);
}

void writeAttribute(QXmlStreamWriter* xml, const char* name, const QString& value)
{
    xml->writeAttribute(QLatin1String(name), plain(value));
}

/// A failure or an error: the message, and what it is about.
void writeComplaint(QXmlStreamWriter* xml, const char* element, const QString& type, const QString& message,
                    const QString& text)
{
    xml->writeStartElement(QLatin1String(element));
    writeAttribute(xml, "type", type);
    writeAttribute(xml, "message", message);
    xml->writeCharacters(plain(text));
    xml->writeEndElement();
}

} // namespace

QString JUnitReport::begin(const QString& file)
{
    m_began = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss"));
    const QString failure = QStringLiteral("%1: the report cannot be written: %2");
    const QFileInfo present(file);
    if (present.exists() && !present.isFile()) {
        return failure.arg(file, QStringLiteral("not a regular file")); // whose place it would take
    }
    m_file.setFileName(file);
    return m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
               ? QString()
               : failure.arg(file, m_file.errorString());
}

void JUnitReport::follow(const Shell& shell)
{
    QObject::connect(&shell, &Shell::expectationEnded, &m_file,
                     [this](const ScriptLine& line, double time, const DWording& complaint) {
                         add({line, time, complaint.english()});
                     });
    QObject::connect(&shell, &Shell::lineFailed, &m_file,
                     [this](const ScriptLine& line, const DWording& reason) {
                         add({line, 0, QString(), reason.english()});
                     });
}

void JUnitReport::add(const Case& done)
{
    const auto suite = std::find_if(m_suites.begin(), m_suites.end(),
                                    [&done](const Suite& known) { return known.file == done.line.file; });
    if (suite == m_suites.end()) {
        m_suites.push_back({done.line.file, {done}});
    } else {
        suite->cases.push_back(done);
    }
}

QString JUnitReport::write()
{
    QByteArray document;
    QXmlStreamWriter xml(&document);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    int number = 0;
    for (const Suite& suite : m_suites) {
        const auto count = [&suite](QString Case::*complaint) {
            return QString::number(
                std::count_if(suite.cases.cbegin(), suite.cases.cend(),
                              [complaint](const Case& done) { return !(done.*complaint).isEmpty(); }));
        };
        double time = 0;
        for (const Case& done : suite.cases) {
            time += done.seconds;
        }
        xml.writeStartElement(QStringLiteral("testsuite"));
        writeAttribute(&xml, "name", suite.file);
        writeAttribute(&xml, "package", QStringLiteral("appvantor"));
        writeAttribute(&xml, "id", QString::number(number++));
        writeAttribute(&xml, "timestamp", m_began);
        writeAttribute(&xml, "hostname", QSysInfo::machineHostName());
        writeAttribute(&xml, "tests", QString::number(suite.cases.size()));
        writeAttribute(&xml, "failures", count(&Case::failure));
        writeAttribute(&xml, "errors", count(&Case::error));
        writeAttribute(&xml, "time", seconds(time));
        xml.writeEmptyElement(QStringLiteral("properties"));
        for (const Case& done : suite.cases) {
            const QString text = done.line.text.trimmed();
            const QString place = done.line.place();
            xml.writeStartElement(QStringLiteral("testcase"));
            writeAttribute(&xml, "name", place.isEmpty() ? text : place + QStringLiteral(": ") + text);
            writeAttribute(&xml, "classname", suite.file);
            writeAttribute(&xml, "time", seconds(done.seconds));
            if (!done.failure.isEmpty()) {
                writeComplaint(&xml, "failure", QStringLiteral("expectation"), done.failure, text);
            } else if (!done.error.isEmpty()) {
                writeComplaint(&xml, "error", QStringLiteral("script"), done.error, text);
            }
            xml.writeEndElement();
        }
        xml.writeEmptyElement(QStringLiteral("system-out"));
        xml.writeEmptyElement(QStringLiteral("system-err"));
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    const bool written = writeAll(document, &m_file) && m_file.commit();
    return written ? QString()
                   : QStringLiteral("%1: the report cannot be written: %2")
                         .arg(m_file.fileName(), m_file.errorString());
}
