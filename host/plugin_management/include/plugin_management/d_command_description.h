#pragma once

#include <QString>
#include <QVarLengthArray>
#include <QVariant>

#include <algorithm>

/// A declared parameter or result of a command.
struct DDeclaration
{
    QString name;
    QString typeTag;
    QString description;
    QVariant defaultValue;
};

/// Few in most commands, and made anew with each working instance.
using DDeclarations = QVarLengthArray<DDeclaration, 2>;

/// A command as its plugin declares it.
struct DCommandDescription
{
    QString name;
    QString stopName;
    QString description;
    DDeclarations parameters;
    DDeclarations results;

    /// True when the command only asks: it declares a result that has no value before it has run.
    bool asks() const
    {
        return std::any_of(results.cbegin(), results.cend(),
                           [](const DDeclaration& result) { return !result.defaultValue.isValid(); });
    }
};
