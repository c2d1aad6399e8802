#include "os/library.h"

#include <utility>

namespace os {

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : m_handle(std::exchange(other.m_handle, nullptr)), m_error_text(std::move(other.m_error_text)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    std::swap(m_error_text, other.m_error_text);
    return *this;
}

}  // namespace os
