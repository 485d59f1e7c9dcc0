#pragma once

#include <devices/broker_address.h>

#include <openssl/ssl.h>

#include <memory>

struct SecurityContextDeleter
{
    void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
using SecurityContext = std::unique_ptr<SSL_CTX, SecurityContextDeleter>;

/// Settings of an encrypted connection that is made with the broker that has the name or number of address
/// in its certificate, and with no other; verdict, which must outlive them, receives why another one was
/// refused. Returns null, and in problem why, when a file of access cannot be used.
SecurityContext makeSecurity(const BrokerAddress& address, const BrokerAccess& access, QString* verdict,
                             DWording* problem);
