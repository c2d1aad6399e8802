// The factories of the driver: without a client none, else a new command, which has sent its request.
#include "drivertrace.h"
#include "m2zendrixgetcommand.h"
#include "m2zendrixinitcommand.h"
#include "m2zendrixkeypaddisablecommand.h"
#include "m2zendrixkeypadenablecommand.h"
#include "m2zendrixmachabstract.h"
#include "m2zendrixmodulocommand.h"
#include "m2zendrixmovebasecommand.h"
#include "m2zendrixmovecirclecommand.h"
#include "m2zendrixmovecommand.h"
#include "m2zendrixmoveconecommand.h"
#include "m2zendrixmovehomecommand.h"
#include "m2zendrixmovepolycommand.h"
#include "m2zendrixmovezerocommand.h"
#include "m2zendrixprobechangecommand.h"
#include "m2zendrixprobedefinecommand.h"
#include "m2zendrixprobedeletecommand.h"
#include "m2zendrixprobeloadcommand.h"
#include "m2zendrixprobeoffsetcommand.h"
#include "m2zendrixprobesystemdefinecommand.h"
#include "m2zendrixprobesystemdeletecommand.h"
#include "m2zendrixprobesystemloadcommand.h"
#include "m2zendrixprobesystemunloadcommand.h"
#include "m2zendrixprobeunloadcommand.h"
#include "m2zendrixreceivecommand.h"
#include "m2zendrixresetcommand.h"
#include "m2zendrixscanbasecommand.h"
#include "m2zendrixscancirclecommand.h"
#include "m2zendrixscancommand.h"
#include "m2zendrixscanconecommand.h"
#include "m2zendrixscandatacommand.h"
#include "m2zendrixscanpointcommand.h"
#include "m2zendrixscanpolycommand.h"
#include "m2zendrixsendcommand.h"
#include "m2zendrixsetcommand.h"
#include "m2zendrixspindisablecommand.h"
#include "m2zendrixspinenablecommand.h"
#include "m2zendrixwobblecommand.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_factories.cpp";

// The machine drops the connection when it has taken a block with this in its name.
constexpr const char* firmware_configuration = "firmware.config";

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
MMachKeypadDisableCommand* M2ZendrixMachAbstract::NewMMachKeypadDisableCommand(MOutputChannel* channel,
                                                                               const AxisSet& axes) {
    return new_command<M2ZendrixKeypadDisableCommand>(this, channel, axes);
}
MMachKeypadEnableCommand* M2ZendrixMachAbstract::NewMMachKeypadEnableCommand(MOutputChannel* channel,
                                                                             const AxisSet& axes) {
    return new_command<M2ZendrixKeypadEnableCommand>(this, channel, axes);
}
MMachSpinDisableCommand* M2ZendrixMachAbstract::NewMMachSpinDisableCommand(MOutputChannel* channel,
                                                                           const AxisSet& axes) {
    return new_command<M2ZendrixSpinDisableCommand>(this, channel, axes);
}
MMachSpinEnableCommand* M2ZendrixMachAbstract::NewMMachSpinEnableCommand(
    MOutputChannel* channel, const std::map<std::string, bool>& axes) {
    return new_command<M2ZendrixSpinEnableCommand>(this, channel, axes);
}
MMachProbesystemLoadCommand* M2ZendrixMachAbstract::NewMMachProbesystemLoadCommand(MOutputChannel* channel,
                                                                                   const std::string& name,
                                                                                   long id) {
    return new_command<M2ZendrixProbesystemLoadCommand>(this, channel, name, id);
}
MMachProbesystemUnloadCommand* M2ZendrixMachAbstract::NewMMachProbesystemUnloadCommand(
    MOutputChannel* channel) {
    return new_command<M2ZendrixProbesystemUnloadCommand>(this, channel);
}
MMachProbesystemDefineCommand* M2ZendrixMachAbstract::NewMMachProbesystemDefineCommand(
    MOutputChannel* channel, const MMachProbesystemDefinition& definition) {
    return new_command<M2ZendrixProbesystemDefineCommand>(this, channel, definition);
}
MMachProbesystemDeleteCommand* M2ZendrixMachAbstract::NewMMachProbesystemDeleteCommand(
    MOutputChannel* channel, const std::string& name, long id) {
    return new_command<M2ZendrixProbesystemDeleteCommand>(this, channel, name, id);
}
MMachProbeLoadCommand* M2ZendrixMachAbstract::NewMMachProbeLoadCommand(MOutputChannel* channel, long probe,
                                                                       long tip) {
    return new_command<M2ZendrixProbeLoadCommand>(this, channel, probe, tip);
}
MMachProbeDeleteCommand* M2ZendrixMachAbstract::NewMMachProbeDeleteCommand(MOutputChannel* channel,
                                                                           long probe, long tip) {
    return new_command<M2ZendrixProbeDeleteCommand>(this, channel, probe, tip);
}
MMachProbeDefineCommand* M2ZendrixMachAbstract::NewMMachProbeDefineCommand(
    MOutputChannel* channel, long probe, long tip, const std::map<std::string, double>& values) {
    return new_command<M2ZendrixProbeDefineCommand>(this, channel, probe, tip, values);
}
MMachProbeUnloadCommand* M2ZendrixMachAbstract::NewMMachProbeUnloadCommand(MOutputChannel* channel) {
    return new_command<M2ZendrixProbeUnloadCommand>(this, channel);
}
MMachProbeChangeCommand* M2ZendrixMachAbstract::NewMMachProbeChangeCommand(MOutputChannel* channel,
                                                                           long probe, long tip) {
    return new_command<M2ZendrixProbeChangeCommand>(this, channel, probe, tip);
}
MMachProbeOffsetCommand* M2ZendrixMachAbstract::NewMMachProbeOffsetCommand(MOutputChannel* channel,
                                                                           const AxisTargetMap& offsets) {
    return new_command<M2ZendrixProbeOffsetCommand>(this, channel, offsets);
}
MMachWobbleCommand* M2ZendrixMachAbstract::NewMMachWobbleCommand(MOutputChannel* channel,
                                                                 const MMachWobbleParameters& parameters) {
    return new_command<M2ZendrixWobbleCommand>(this, channel, parameters);
}
MMachSendCommand* M2ZendrixMachAbstract::NewMMachSendCommand(MOutputChannel* channel, const std::string& name,
                                                             const std::string& data) {
    if (!client()) return nullptr;
    if (name.find(firmware_configuration) != std::string::npos) {
        DRIVER_TRACE(source, 2, "%s(): send to %s. We expect connection loss!",
                     "M2ZendrixMachAbstract::NewMMachSendCommand", name.c_str());
        m_expectConnectionLoss = true;
    }
    return new_command<M2ZendrixSendCommand>(this, channel, name, data);
}
MMachReceiveCommand* M2ZendrixMachAbstract::NewMMachReceiveCommand(MOutputChannel* channel,
                                                                   const std::string& name) {
    return new_command<M2ZendrixReceiveCommand>(this, channel, name, m_directory);
}
