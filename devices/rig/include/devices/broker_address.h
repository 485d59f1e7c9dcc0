#pragma once

#include <plugin_management/d_wording.h>

#include <QByteArray>
#include <QString>

#include <optional>

/// Where a broker is, and the rig that is meant on it.
struct BrokerAddress
{
    QString host;
    int port = 0;
    bool encrypted = false;
    QString rig; ///< empty when the address names none

    /// "mqtt://host:1883", without the rig.
    QString text() const;
};

/// Reads "mqtt://HOST[:PORT]/[RIG]" or "mqtts://…", with the ports 1883 and 8883. Returns nothing, and in
/// problem what was expected, for anything else.
std::optional<BrokerAddress> readBrokerAddress(const QString& text, DWording* problem);

/// What a broker asks of who comes to it; files as their names, empty for none.
struct BrokerAccess
{
    QString user;
    QByteArray password;
    QString authorities; ///< certificates that the broker's must come from; the system's own without it
    QString certificate; ///< of this side
    QString key;         ///< of the certificate
};

/// What keeps the files of access from being read; empty when nothing does.
DWording unreadableFile(const BrokerAccess& access);

/// Takes user and password from file, whose first line is "USER:PASSWORD"; without a file from the
/// environment, APPVANTOR_USER and APPVANTOR_PASSWORD. Returns what is wrong with the file, or nothing.
DWording readLogin(const QString& file, BrokerAccess* access);
