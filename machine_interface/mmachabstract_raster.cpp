// Which axes take the roles of a raster or a scan base.
#include <utility>

#include "mmachabstract.h"
#include "moutputchannel.h"

namespace {

// The names that a request can hold, as bits.
enum Name : unsigned {
    X = 1,
    Y = 2,
    Z = 4,
    C = 8,
    KX = 16,
    KY = 32,
    TX = 64,
    TY = 128,
    TZ = 256,
    K = KX | KY,
    T = TX | TY
};

constexpr std::pair<const char*, Name> names[] = {{"x", X},   {"y", Y},   {"z", Z},   {"c", C},  {"kx", KX},
                                                  {"ky", KY}, {"tx", TX}, {"ty", TY}, {"tz", TZ}};

// The names among the keys; any other key counts for nothing.
unsigned names_in(const AxisTargetMap& axes) {
    unsigned found = 0;
    for (const auto& [name, bit] : names) {
        if (axes.contains(name)) found |= bit;
    }
    return found;
}

bool is_forbidden(unsigned request) {
    const auto both = [request](unsigned a, unsigned b) { return (request & a) != 0 && (request & b) != 0; };
    return both(K, X | Y | C) || both(T, X | Y | C) || both(K, T) || both(Z, TZ);
}

struct Roles {
    const char* raster1 = nullptr;
    const char* raster2 = nullptr;
    const char* raster3 = nullptr;
    const char* rotary = nullptr;
};

class Decision {
public:
    Decision(MMachAbstract& mach, unsigned request) : m_mach(mach), m_request(request) {}

    Roles roles() {
        if (has(K)) {
            take_pair("kx", "ky");
        } else if (has(T)) {
            take_pair("tx", "ty");
        } else if (has(X | Y | Z)) {
            take_pair("x", "y");
        }
        take_third();
        if (!m_roles.raster1 && !m_roles.raster2) take_fallback();
        if (has(C)) m_roles.rotary = active("c");
        return m_roles;
    }

private:
    bool has(unsigned name) const { return (m_request & name) != 0; }
    const char* active(const char* axis) { return m_mach.IsAxisActive(axis) ? axis : nullptr; }

    void take_pair(const char* first, const char* second) {
        m_roles.raster1 = active(first);
        m_roles.raster2 = active(second);
    }

    // What the request names comes first; a request with a pair gets a third axis all the same.
    void take_third() {
        const bool fill = has(K | T | X | Y | Z);
        for (const auto& [axis, wanted] : {std::pair("z", has(Z)), std::pair("tz", has(TZ)),
                                           std::pair("z", fill), std::pair("tz", fill)}) {
            if (wanted && !m_roles.raster3) m_roles.raster3 = active(axis);
        }
    }

    void take_fallback() {
        if (has(Z)) {
            take_pair("x", "y");
        } else if (has(TZ)) {
            take_pair("tx", "ty");
        }
    }

    MMachAbstract& m_mach;
    const unsigned m_request;
    Roles m_roles;
};

// The rule for requests of any shape.
bool decide(MMachAbstract& mach, MOutputChannel& channel, unsigned request, const char*& raster1,
            const char*& raster2, const char*& raster3, const char*& rotary) {
    if (request == 0) {
        channel.errorf("no axis to raster");
        return false;
    }
    if (is_forbidden(request)) {
        channel.errorf("wrong combination of raster axes");
        return false;
    }
    const Roles roles = Decision(mach, request).roles();
    raster1 = roles.raster1;
    raster2 = roles.raster2;
    raster3 = roles.raster3;
    rotary = roles.rotary;
    return true;
}

}  // namespace

bool MMachAbstract::GetRasterAxes(MOutputChannel& channel, const AxisTargetMap& axes, const char*& raster1,
                                  const char*& raster2, const char*& raster3, const char*& rotary) {
    const unsigned request = names_in(axes);
    if (axes.size() == 1 && request == 0) {
        // One axis outside the groups is taken as it stands, active or not.
        raster1 = axes.begin()->first.c_str();
        raster2 = raster3 = rotary = nullptr;
        return true;
    }
    return decide(*this, channel, request, raster1, raster2, raster3, rotary);
}

bool MMachAbstract::GetRasterAxes(MOutputChannel& channel, const MMachCircle& circle, const char*& raster1,
                                  const char*& raster2, const char*& raster3, const char*& rotary) {
    return decide(*this, channel, X | Y | Z | names_in(circle.axes.m_targets), raster1, raster2, raster3,
                  rotary);
}

bool MMachAbstract::GetRasterAxes(MOutputChannel& channel, const std::vector<AxisTargetMap>& groups,
                                  const char*& raster1, const char*& raster2, const char*& raster3,
                                  const char*& rotary) {
    unsigned request = 0;
    for (const AxisTargetMap& group : groups) request |= names_in(group);
    return decide(*this, channel, request, raster1, raster2, raster3, rotary);
}

bool MMachAbstract::GetScanbaseAxes(MOutputChannel& channel, const AxisSet& axes, const char*& raster1,
                                    const char*& raster2, const char*& raster3, const char*& rotary) {
    raster1 = raster2 = raster3 = rotary = nullptr;
    if (axes.empty()) {
        channel.errorf("no axis to raster");
        return false;
    }
    if (axes.size() == 1) {
        if (IsAxisActive(*axes.begin())) {
            raster1 = axes.begin()->c_str();
            return true;
        }
        channel.errorf("scanbase axis is inactive");
        return false;
    }
    std::size_t known = 0;
    bool filled = false;
    const std::pair<const char*, const char**> roles[] = {
        {"x", &raster1}, {"y", &raster2}, {"z", &raster3}, {"c", &rotary}};
    for (const auto& [axis, role] : roles) {
        if (!axes.contains(axis)) continue;
        ++known;
        if (!IsAxisActive(axis)) continue;
        *role = axis;
        filled = true;
    }
    if (known == axes.size() && filled) return true;
    channel.errorf("invalid scanbase axes combination");
    return false;
}
