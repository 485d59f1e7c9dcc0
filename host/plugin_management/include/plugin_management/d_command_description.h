#pragma once

#include <QString>
#include <QVariant>

#include <vector>

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
    std::vector<DDeclaration> parameters;
    std::vector<DDeclaration> results;
};
