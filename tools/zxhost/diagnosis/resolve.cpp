#include "resolve.h"

#include <algorithm>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

namespace zxhost {

std::vector<std::string> resolve(const std::string& host, std::string& failure) {
    asio::io_context context{1};
    asio::error_code error;
    std::vector<std::string> addresses;
    for (const auto& entry : asio::ip::tcp::resolver(context).resolve(host, "", error)) {
        const std::string address = entry.endpoint().address().to_string();
        if (std::find(addresses.begin(), addresses.end(), address) == addresses.end())
            addresses.push_back(address);
    }
    if (error) failure = error.message();
    return addresses;
}

}  // namespace zxhost
