#include "files.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

QString Files::documentFile(const QString& name) const
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QLatin1Char('/') + name;
}

QString Files::write(const QString& file, const QByteArray& content)
{
    QString path = file.trimmed();
    if (path.startsWith(QLatin1String("~/"))) {
        path = QDir::homePath() + path.mid(1);
    }
    const QFileInfo present(path);
    if (path.isEmpty() || (present.exists() && !present.isFile())) {
        return qtTrId("save_no_file").arg(path);
    }
    QSaveFile target(path);
    const bool written =
        target.open(QIODevice::WriteOnly) && target.write(content) == content.size() && target.commit();
    return written ? QString() : qtTrId("save_failed").arg(path, target.errorString());
}
