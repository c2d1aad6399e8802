// Where a machine controller is reached unless the configuration says otherwise.
#pragma once

constexpr const char* default_host = "192.168.2.10";
constexpr const char* default_port = "7073";
