// Something that a callback has to be told.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace serverdll {

struct Delivery {
    enum class Kind {
        event,
        error,
        warning,
        complete,
        points,  // rows of `width` values, one call of the scan callback each
        watch,   // likewise, of the watch callback
        silence  // nothing is told after this
    };

    Kind kind = Kind::event;
    long id = 0;
    std::size_t width = 0;
    std::size_t rows = 0;
    std::string text = {};
    std::vector<double> values = {};

    // What it holds while it waits.
    std::size_t bytes() const noexcept {
        return sizeof(Delivery) + text.size() + values.size() * sizeof(double);
    }
};

}  // namespace serverdll
