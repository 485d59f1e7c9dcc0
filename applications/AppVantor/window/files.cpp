#include "files.h"

#include "texts.h"

#include <QClipboard>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QGuiApplication>
#include <QSaveFile>
#include <QStandardPaths>

QString Files::documentFile(const QString& name) const
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return (QFileInfo(documents).isDir() ? documents : QDir::homePath()) + QLatin1Char('/') + name;
}

QStringList Files::completions(const QString& begun, const QString& suffix) const
{
    constexpr int most = 200;
    constexpr int mostLookedAt = 20000; // a folder may hold millions
    const int slash = begun.lastIndexOf(QLatin1Char('/')) + 1;
    const QString folder = begun.left(slash);
    const QString start = begun.mid(slash);
    QStringList folders;
    QStringList files;
    QDirIterator entries(slash > 0 ? pathOf(folder) : QStringLiteral("."),
                         QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot);
    for (int entry = 0; entry < mostLookedAt && entries.hasNext(); ++entry) {
        entries.next();
        const QFileInfo info = entries.fileInfo();
        if (!info.fileName().startsWith(start, Qt::CaseInsensitive)) {
            continue;
        }
        if (info.isDir()) {
            folders.append(folder + info.fileName() + QLatin1Char('/'));
        } else if (suffix.isEmpty() || info.suffix() == suffix) {
            files.append(folder + info.fileName());
        }
    }
    folders.sort(Qt::CaseInsensitive);
    files.sort(Qt::CaseInsensitive);
    return (folders + files).mid(0, most);
}

bool Files::isFolder(const QString& file) const
{
    return QFileInfo(pathOf(file)).isDir();
}

bool Files::isFile(const QString& file) const
{
    return QFileInfo(pathOf(file)).isFile();
}

QString Files::shortPath(const QString& path) const
{
    const QString home = QDir::homePath() + QLatin1Char('/');
    return path.startsWith(home) ? QStringLiteral("~/") + path.mid(home.size()) : path;
}

void Files::copy(const QString& text) const
{
    QGuiApplication::clipboard()->setText(text);
}

QString Files::pathOf(const QString& file)
{
    const QString path = file.trimmed();
    return path.startsWith(QLatin1String("~/")) ? QDir::homePath() + path.mid(1) : path;
}

QString Files::write(const QString& file, const QByteArray& content)
{
    const QString path = pathOf(file);
    const QFileInfo present(path);
    if (path.isEmpty() || (present.exists() && !present.isFile())) {
        return qtTrId("save_no_file").arg(path);
    }
    QSaveFile target(path);
    const bool written =
        target.open(QIODevice::WriteOnly) && target.write(content) == content.size() && target.commit();
    return written ? QString()
                   : qtTrId("save_failed").arg(path, worded(DWording::told(target.errorString())));
}
