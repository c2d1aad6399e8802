// What our libraries do to a process by being loaded.
#include <gtest/gtest.h>
#include <winsock2.h>
// winsock2.h comes first
#include <windows.h>

namespace {

// Starting Winsock while a library is loaded may lock up the process.
TEST(LoadingWin32, StartsNoNetwork) {
    for (const char* library : {LIBRARIES_WITH_ASIO}) {
        ASSERT_NE(::LoadLibraryA(library), nullptr) << library;
        EXPECT_EQ(::WSACleanup(), SOCKET_ERROR) << library;
        EXPECT_EQ(::WSAGetLastError(), WSANOTINITIALISED) << library;
    }
}

}  // namespace
