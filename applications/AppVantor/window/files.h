#pragma once

#include <QObject>

/// The files that the user opens and saves in the window.
class Files : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(Files)

public:
    explicit Files(QObject* parent = nullptr)
        : QObject(parent)
    {}

    /// A place for such a file: name in the folder for documents, or where there is none, in the home folder.
    Q_INVOKABLE QString documentFile(const QString& name) const;

    /// The path that the user means by file; "~/" at its begin is the home folder.
    Q_INVOKABLE QString path(const QString& file) const { return pathOf(file); }

    /// What the path begun may go on to: folders, with "/" at their end, and then the files with this suffix,
    /// all files without one, by name; at most 200 of them.
    Q_INVOKABLE QStringList completions(const QString& begun, const QString& suffix) const;

    /// True for the path of a folder.
    Q_INVOKABLE bool isFolder(const QString& file) const;

    /// True for the path of a regular file.
    Q_INVOKABLE bool isFile(const QString& file) const;

    /// The path as people write it: the home folder is "~".
    Q_INVOKABLE QString shortPath(const QString& path) const;

    /// Puts text into the clipboard.
    Q_INVOKABLE void copy(const QString& text) const;

    /// Writes content into file, whole or not at all. What is there and no regular file stays. Returns
    /// an empty text, or why it cannot be written.
    static QString write(const QString& file, const QByteArray& content);

private:
    static QString pathOf(const QString& file);
};
