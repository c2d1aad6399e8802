// Which road a connection string names.
#include "transport.h"

#include "czendrixcom.h"

namespace serverdll {

std::unique_ptr<Transport> connect_transport(const std::string& server, const ClientOptions& options) {
    if (server.find(".dll") != std::string::npos) return connect_library(server);
    if (server.find("COM") != std::string::npos) return connect_serial(server);
    return connect_tcp(server, options);
}

void refuse_connection(const std::string& server, const std::string& cause) {
    throw CZendrixError("can't connect to \"" + server + "\": " + cause);
}

}  // namespace serverdll
