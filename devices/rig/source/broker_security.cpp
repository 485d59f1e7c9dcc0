#include "broker_security.h"

#include <QFile>
#include <QHostAddress>

#include <openssl/err.h>
#include <openssl/x509_vfy.h>

namespace {

DWording whatWentWrong()
{
    const unsigned long error = ERR_peek_last_error();
    ERR_clear_error();
    const char* reason = ERR_reason_error_string(error);
    return reason != nullptr ? DWording::told(QString::fromUtf8(reason)) : wording("it cannot be used");
}

bool loadAuthorities(SSL_CTX* context, const QString& file)
{
    return file.isEmpty() ? SSL_CTX_set_default_verify_paths(context) == 1
                          : SSL_CTX_load_verify_file(context, QFile::encodeName(file).constData()) == 1;
}

bool expectName(SSL_CTX* context, const QString& host)
{
    X509_VERIFY_PARAM* expected = SSL_CTX_get0_param(context);
    const QByteArray name = host.toUtf8();
    return QHostAddress(host).isNull() ? X509_VERIFY_PARAM_set1_host(expected, name.constData(),
                                                                     static_cast<std::size_t>(name.size()))
                                       : X509_VERIFY_PARAM_set1_ip_asc(expected, name.constData());
}

/// The connection itself is gone when its end is told.
int noteVerdict(int isTrusted, X509_STORE_CTX* store)
{
    const auto* connection =
        static_cast<SSL*>(X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
    if (isTrusted == 0) {
        *static_cast<QString*>(SSL_CTX_get_app_data(SSL_get_SSL_CTX(connection))) =
            QString::fromUtf8(X509_verify_cert_error_string(X509_STORE_CTX_get_error(store)));
    }
    return isTrusted;
}

} // namespace

SecurityContext makeSecurity(const BrokerAddress& address, const BrokerAccess& access, QString* verdict,
                             DWording* problem)
{
    SecurityContext context(SSL_CTX_new(TLS_client_method()));
    SSL_CTX_set_app_data(context.get(), verdict);
    SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER, noteVerdict);
    SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION);
    if (!loadAuthorities(context.get(), access.authorities)) {
        *problem = wording("%1: %2").arg(access.authorities, whatWentWrong());
        return nullptr;
    }
    if (!expectName(context.get(), address.host)) {
        *problem = wording("%1: %2").arg(address.host, whatWentWrong());
        return nullptr;
    }
    if (access.certificate.isEmpty()) {
        return context;
    }
    const QString key = access.key.isEmpty() ? access.certificate : access.key;
    if (SSL_CTX_use_certificate_chain_file(context.get(),
                                           QFile::encodeName(access.certificate).constData()) != 1) {
        *problem = wording("%1: %2").arg(access.certificate, whatWentWrong());
        return nullptr;
    }
    if (SSL_CTX_use_PrivateKey_file(context.get(), QFile::encodeName(key).constData(), SSL_FILETYPE_PEM) !=
        1) {
        *problem = wording("%1: %2").arg(key, whatWentWrong());
        return nullptr;
    }
    return context;
}
