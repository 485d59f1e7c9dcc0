#include "files.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

QString Files::documentFile(const QString& name) const
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QLatin1Char('/') + name;
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
    return written ? QString() : qtTrId("save_failed").arg(path, target.errorString());
}
