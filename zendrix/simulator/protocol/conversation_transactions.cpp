// The handlers of transactions. The machine checks what they ask for and takes the motion up.
#include <algorithm>

#include "protocol/arguments.h"
#include "protocol/conversation.h"
#include "request.h"

namespace zendrix::sim {

namespace {

using Outcome = Conversation::Outcome;

ArcRequest circle(Arguments& arguments) {
    ArcRequest arc;
    for (double* field :
         {&arc.center.x, &arc.center.y, &arc.center.z, &arc.radius, &arc.start, &arc.sweep, &arc.speed}) {
        *field = number(arguments);
    }
    arc.end_radius = arc.radius;
    return arc;
}

ArcRequest cone(Arguments& arguments) {
    ArcRequest arc = circle(arguments);
    arc.height = number(arguments);
    arc.end_radius = number(arguments);
    return arc;
}

// The count of points stands ahead of them.
std::vector<wire::Target> polygon(Arguments& arguments) {
    const std::int64_t points = integer(arguments, 0, wire::max_id);
    std::vector<wire::Target> targets = all_targets(arguments);
    const auto ends = std::count_if(targets.begin(), targets.end(), [](const wire::Target& target) {
        return target.form == wire::TargetForm::end_of_point;
    });
    if (ends != points) throw Refused{Error::invalid_argument};
    return targets;
}

}  // namespace

Outcome Conversation::init(Arguments& arguments) {
    machine().init(all_names(arguments));
    return Outcome::begun;
}

Outcome Conversation::set(Arguments& arguments) {
    machine().set(all_targets(arguments));
    return Outcome::done;
}

Outcome Conversation::move(Arguments& arguments) {
    machine().move(all_targets(arguments));
    return Outcome::begun;
}

Outcome Conversation::movezero(Arguments& arguments) {
    machine().move_to_contact(all_targets(arguments));
    return Outcome::begun;
}

Outcome Conversation::movepoly(Arguments& arguments) {
    machine().move_polygon(polygon(arguments));
    return Outcome::begun;
}

Outcome Conversation::movecircle(Arguments& arguments) {
    const ArcRequest arc = circle(arguments);
    machine().move_arc(arc, all_targets(arguments));
    return Outcome::begun;
}

Outcome Conversation::movecone(Arguments& arguments) {
    const ArcRequest arc = cone(arguments);
    machine().move_arc(arc, all_targets(arguments));
    return Outcome::begun;
}

Outcome Conversation::movehome(Arguments& arguments) {
    no_more(arguments);
    machine().home();
    return Outcome::begun;
}

Outcome Conversation::scan(Arguments& arguments) {
    machine().scan(all_targets(arguments));
    return Outcome::begun;
}

Outcome Conversation::scanpoint(Arguments& arguments) {
    machine().scan_point(all_targets(arguments));
    return Outcome::begun;
}

Outcome Conversation::scanpoly(Arguments& arguments) {
    machine().scan_polygon(polygon(arguments));
    return Outcome::begun;
}

Outcome Conversation::scancircle(Arguments& arguments) {
    const ArcRequest arc = circle(arguments);
    machine().scan_arc(arc, all_targets(arguments));
    return Outcome::begun;
}

Outcome Conversation::scancone(Arguments& arguments) {
    const ArcRequest arc = cone(arguments);
    machine().scan_arc(arc, all_targets(arguments));
    return Outcome::begun;
}

Outcome Conversation::scandata(Arguments& arguments) {
    machine().select_data(all_names(arguments));
    return Outcome::done;
}

}  // namespace zendrix::sim
