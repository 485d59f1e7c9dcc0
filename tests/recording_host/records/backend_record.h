#pragma once

#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

class DAbstractPluginBackend;
struct DBoundTool;

/// What one backend asked of its base, and what the base answers.
struct BackendRecord
{
    struct Treatment
    {
        int id;
        QString name;
        QVariantMap parameters;
    };
    struct Release
    {
        int id;
        QString name;
        bool success;
    };

    QString pluginLib;
    QObject* parent = nullptr;
    bool isInitialised = false;

    /// Answers: so many of the next treatments are refused, whatever the host's habit.
    int refusals = 0;
    bool pending = false;
    bool baseReplyAnswer = false;
    /// Called with each treatment after it was written down.
    std::function<void(const Treatment& treatment)> onTreatment;
    /// Called when the base is destroyed, after all that the backend holds.
    std::function<void()> onDestroyed;

    /// All treatments that the backend asked for, and those of them that were accepted.
    QVector<Treatment> asked;
    QVector<Treatment> accepted;
    /// What reached the base's own implementations.
    QVector<Treatment> baseReplies;
    QVector<Release> baseReleases;
};

/// The record of backend, which lives as long as the backend.
Q_DECL_EXPORT BackendRecord& recordOf(const DAbstractPluginBackend& backend);
/// Binds backend to tool, null for none, and tells it that it is initialised. A host that initialises too
/// early tells it the first time only, before it binds it.
Q_DECL_EXPORT void initialise(DAbstractPluginBackend& backend, DBoundTool* tool);
