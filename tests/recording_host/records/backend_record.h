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

    /// Answers: the next treatments are refused so many times.
    int refusals = 0;
    bool pending = false;
    bool baseReplyAnswer = false;
    /// Called with each treatment after it was written down.
    std::function<void(const Treatment& treatment)> onTreatment;
    /// Called when the base is destroyed, after all that the backend holds.
    std::function<void()> onDestroyed;

    /// Accepted treatments.
    QVector<Treatment> treatments;
    QVector<Treatment> refused;
    /// What reached the base's own implementations.
    QVector<Treatment> baseReplies;
    QVector<Release> baseReleases;
};

/// The record of backend, which lives as long as the backend.
Q_DECL_EXPORT BackendRecord& recordOf(const DAbstractPluginBackend& backend);
/// Binds backend to tool; null for none.
Q_DECL_EXPORT void bindTool(DAbstractPluginBackend& backend, DBoundTool* tool);
