#pragma once

#include <QObject>

/// The files that the user saves from the window.
class Files : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Files)

public:
    explicit Files(QObject* parent = nullptr)
        : QObject(parent)
    {}

    /// A place for such a file: name in the folder for documents.
    Q_INVOKABLE QString documentFile(const QString& name) const;

    /// The path that the user means by file; "~/" at its begin is the home folder.
    Q_INVOKABLE QString path(const QString& file) const { return pathOf(file); }

    /// Writes content into file, whole or not at all. What is there and no regular file stays. Returns
    /// an empty text, or why it cannot be written.
    static QString write(const QString& file, const QByteArray& content);

private:
    static QString pathOf(const QString& file);
};
