#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

/// A declared parameter or result of a command.
struct DDeclaration
{
    QString name;
    QString typeTag;
    QString description;
    QVariant defaultValue;
};

/// A command as its plugin declares it.
struct DCommandDescription
{
    QString name;
    QString stopName;
    QString description;
    QVector<DDeclaration> parameters;
    QVector<DDeclaration> results;
};
