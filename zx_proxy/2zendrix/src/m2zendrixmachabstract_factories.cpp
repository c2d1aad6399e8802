// The factories of the driver: without a client none, else a new command, which has sent its request.
#include "m2zendrixgetcommand.h"
#include "m2zendrixinitcommand.h"
#include "m2zendrixmachabstract.h"
#include "m2zendrixmodulocommand.h"
#include "m2zendrixmovebasecommand.h"
#include "m2zendrixmovecirclecommand.h"
#include "m2zendrixmovecommand.h"
#include "m2zendrixmoveconecommand.h"
#include "m2zendrixmovehomecommand.h"
#include "m2zendrixmovepolycommand.h"
#include "m2zendrixmovezerocommand.h"
#include "m2zendrixresetcommand.h"
#include "m2zendrixscanbasecommand.h"
#include "m2zendrixscancirclecommand.h"
#include "m2zendrixscancommand.h"
#include "m2zendrixscanconecommand.h"
#include "m2zendrixscandatacommand.h"
#include "m2zendrixscanpointcommand.h"
#include "m2zendrixscanpolycommand.h"
#include "m2zendrixsetcommand.h"

namespace {

template <class Command, class... Arguments>
Command* new_command(M2ZendrixMachAbstract* mach, MOutputChannel* channel, const Arguments&... arguments) {
    if (!mach->client()) return nullptr;
    return new Command(mach, channel, arguments...);
}

}  // namespace

MMachGetCommand* M2ZendrixMachAbstract::NewMMachGetCommand(MOutputChannel* channel,
                                                           const std::vector<std::string>& axes) {
    return new_command<M2ZendrixGetCommand>(this, channel, axes);
}
MMachInitCommand* M2ZendrixMachAbstract::NewMMachInitCommand(MOutputChannel* channel, const AxisSet& axes) {
    return new_command<M2ZendrixInitCommand>(this, channel, axes);
}
MMachResetCommand* M2ZendrixMachAbstract::NewMMachResetCommand(MOutputChannel* channel) {
    return new_command<M2ZendrixResetCommand>(this, channel);
}
MMachSetCommand* M2ZendrixMachAbstract::NewMMachSetCommand(MOutputChannel* channel,
                                                           const std::map<std::string, double>& values) {
    return new_command<M2ZendrixSetCommand>(this, channel, values);
}
MMachModuloCommand* M2ZendrixMachAbstract::NewMMachModuloCommand(MOutputChannel* channel,
                                                                 const AxisSet& axes) {
    return new_command<M2ZendrixModuloCommand>(this, channel, axes);
}
MMachMoveCommand* M2ZendrixMachAbstract::NewMMachMoveCommand(MOutputChannel* channel,
                                                             const MMachAxisTargets& targets) {
    return new_command<M2ZendrixMoveCommand>(this, channel, targets);
}
MMachMovebaseCommand* M2ZendrixMachAbstract::NewMMachMovebaseCommand(MOutputChannel* channel,
                                                                     const AxisSet& axes) {
    return new_command<M2ZendrixMovebaseCommand>(this, channel, axes);
}
MMachMovecircleCommand* M2ZendrixMachAbstract::NewMMachMovecircleCommand(MOutputChannel* channel,
                                                                         const MMachCircle& circle) {
    return new_command<M2ZendrixMoveCircleCommand>(this, channel, circle);
}
MMachMoveconeCommand* M2ZendrixMachAbstract::NewMMachMoveconeCommand(MOutputChannel* channel,
                                                                     const MMachCone& cone) {
    return new_command<M2ZendrixMoveConeCommand>(this, channel, cone);
}
MMachMovehomeCommand* M2ZendrixMachAbstract::NewMMachMovehomeCommand(MOutputChannel* channel) {
    return new_command<M2ZendrixMovehomeCommand>(this, channel);
}
MMachMovepolyCommand* M2ZendrixMachAbstract::NewMMachMovepolyCommand(
    MOutputChannel* channel, const std::vector<AxisTargetMap>& points) {
    return new_command<M2ZendrixMovepolyCommand>(this, channel, points);
}
MMachMovezeroCommand* M2ZendrixMachAbstract::NewMMachMovezeroCommand(MOutputChannel* channel,
                                                                     const MMachAxisTargets& targets) {
    return new_command<M2ZendrixMovezeroCommand>(this, channel, targets);
}
MMachScanCommand* M2ZendrixMachAbstract::NewMMachScanCommand(MOutputChannel* channel,
                                                             const MMachAxisTargets& targets) {
    return new_command<M2ZendrixScanCommand>(this, channel, targets);
}
MMachScanbaseCommand* M2ZendrixMachAbstract::NewMMachScanbaseCommand(MOutputChannel* channel,
                                                                     const AxisSet& axes) {
    return new_command<M2ZendrixScanbaseCommand>(this, channel, axes);
}
MMachScancircleCommand* M2ZendrixMachAbstract::NewMMachScancircleCommand(MOutputChannel* channel,
                                                                         const MMachCircle& circle) {
    return new_command<M2ZendrixScancircleCommand>(this, channel, circle);
}
MMachScanconeCommand* M2ZendrixMachAbstract::NewMMachScanconeCommand(MOutputChannel* channel,
                                                                     const MMachCone& cone) {
    return new_command<M2ZendrixScanconeCommand>(this, channel, cone);
}
MMachScandataCommand* M2ZendrixMachAbstract::NewMMachScandataCommand(MOutputChannel* channel,
                                                                     const std::vector<std::string>& names) {
    return new_command<M2ZendrixScandataCommand>(this, channel, names);
}
MMachScanpointCommand* M2ZendrixMachAbstract::NewMMachScanpointCommand(MOutputChannel* channel,
                                                                       const MMachAxisTargets& targets) {
    return new_command<M2ZendrixScanpointCommand>(this, channel, targets);
}
MMachScanpolyCommand* M2ZendrixMachAbstract::NewMMachScanpolyCommand(
    MOutputChannel* channel, const std::vector<AxisTargetMap>& points) {
    return new_command<M2ZendrixScanpolyCommand>(this, channel, points);
}
