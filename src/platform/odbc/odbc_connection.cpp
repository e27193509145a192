#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/odbc/connection_name.h>
#include <kvarta16/platform/odbc/odbc_errors.h>
#include <kvarta16/platform/odbc/odbc_recordset.h>
#include <kvarta16/platform/odbc/odbc_server_connection.h>

namespace kvarta16::odbc {

ServerConnection::ServerConnection(StringView name, const ConnectOptions& options)
    : session_(std::make_unique<Session>(name, options.timeout_s)) {}

std::shared_ptr<ado::Recordset> ServerConnection::CreateRecordset() {
    if (session_ == nullptr) {
        throw Failure(ado::error_invalid_connection, u"The connection is closed");
    }
    return std::make_shared<ServerRecordset>();
}

void ServerConnection::Close() {
    static_cast<void>(open_session());
    session_.reset();
}

bool ServerConnection::table_exists(StringView name) {
    Session& session = open_session();
    session.forget_tables();
    return session.find_table({String(name)}) != nullptr;
}

Session& ServerConnection::open_session() const {
    if (session_ == nullptr) {
        throw Failure(ado::error_object_closed, u"The connection is closed");
    }
    return *session_;
}

std::shared_ptr<OdbcConnection> connect(std::string_view utf8_name, ConnectOptions options) {
    if (utf8_name.find_first_not_of(' ') == std::string_view::npos) {
        throw Failure(error_wrong_arguments, u"A connection needs a data source's name");
    }
    return std::make_shared<ServerConnection>(from_utf8(utf8_name), options);
}

std::string shown_name(std::string_view utf8_name) {
    return to_utf8(read_connection_name(from_utf8(utf8_name)).shown);
}

}  // namespace kvarta16::odbc
