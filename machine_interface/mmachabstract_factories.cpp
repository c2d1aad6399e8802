// The default factories: a driver overrides those of the commands that its machine can carry out.
#include "mmachabstract.h"
#include "moutputchannel.h"

namespace {

// "transaction: command unknown", and no command.
std::nullptr_t command_unknown(MOutputChannel* channel) {
    channel->error(15);
    return nullptr;
}

}  // namespace

MMachGetCommand* MMachAbstract::NewMMachGetCommand(MOutputChannel* channel, const std::vector<std::string>&) {
    return command_unknown(channel);
}
MMachInitCommand* MMachAbstract::NewMMachInitCommand(MOutputChannel* channel, const AxisSet&) {
    return command_unknown(channel);
}
MMachKeypadDisableCommand* MMachAbstract::NewMMachKeypadDisableCommand(MOutputChannel* channel,
                                                                       const AxisSet&) {
    return command_unknown(channel);
}
MMachKeypadEnableCommand* MMachAbstract::NewMMachKeypadEnableCommand(MOutputChannel* channel,
                                                                     const AxisSet&) {
    return command_unknown(channel);
}
MMachCommand* MMachAbstract::Reserved109(MOutputChannel* channel) { return command_unknown(channel); }
MMachModuloCommand* MMachAbstract::NewMMachModuloCommand(MOutputChannel* channel, const AxisSet&) {
    return command_unknown(channel);
}
MMachMovebaseCommand* MMachAbstract::NewMMachMovebaseCommand(MOutputChannel* channel, const AxisSet&) {
    return command_unknown(channel);
}
MMachMoveCommand* MMachAbstract::NewMMachMoveCommand(MOutputChannel* channel, const MMachAxisTargets&) {
    return command_unknown(channel);
}
MMachMovecircleCommand* MMachAbstract::NewMMachMovecircleCommand(MOutputChannel* channel,
                                                                 const MMachCircle&) {
    return command_unknown(channel);
}
MMachMoveconeCommand* MMachAbstract::NewMMachMoveconeCommand(MOutputChannel* channel, const MMachCone&) {
    return command_unknown(channel);
}
MMachMovehomeCommand* MMachAbstract::NewMMachMovehomeCommand(MOutputChannel* channel) {
    return command_unknown(channel);
}
MMachMovezeroCommand* MMachAbstract::NewMMachMovezeroCommand(MOutputChannel* channel,
                                                             const MMachAxisTargets&) {
    return command_unknown(channel);
}
MMachReceiveCommand* MMachAbstract::NewMMachReceiveCommand(MOutputChannel* channel, const std::string&) {
    return command_unknown(channel);
}
MMachSendCommand* MMachAbstract::NewMMachSendCommand(MOutputChannel* channel, const std::string&,
                                                     const std::string&) {
    return command_unknown(channel);
}
MMachSetCommand* MMachAbstract::NewMMachSetCommand(MOutputChannel* channel,
                                                   const std::map<std::string, double>&) {
    return command_unknown(channel);
}
MMachScanCommand* MMachAbstract::NewMMachScanCommand(MOutputChannel* channel, const MMachAxisTargets&) {
    return command_unknown(channel);
}
MMachSpinDisableCommand* MMachAbstract::NewMMachSpinDisableCommand(MOutputChannel* channel, const AxisSet&) {
    return command_unknown(channel);
}
MMachSpinEnableCommand* MMachAbstract::NewMMachSpinEnableCommand(MOutputChannel* channel,
                                                                 const std::map<std::string, bool>&) {
    return command_unknown(channel);
}
MMachCommand* MMachAbstract::Reserved123() { return nullptr; }
MMachProbesystemLoadCommand* MMachAbstract::NewMMachProbesystemLoadCommand(MOutputChannel* channel,
                                                                           const std::string&, long) {
    return command_unknown(channel);
}
MMachProbesystemUnloadCommand* MMachAbstract::NewMMachProbesystemUnloadCommand(MOutputChannel* channel) {
    return command_unknown(channel);
}
MMachProbesystemDefineCommand* MMachAbstract::NewMMachProbesystemDefineCommand(
    MOutputChannel* channel, const MMachProbesystemDefinition&) {
    return command_unknown(channel);
}
MMachProbesystemDeleteCommand* MMachAbstract::NewMMachProbesystemDeleteCommand(MOutputChannel* channel,
                                                                               const std::string&, long) {
    return command_unknown(channel);
}
MMachProbeLoadCommand* MMachAbstract::NewMMachProbeLoadCommand(MOutputChannel* channel, long, long) {
    return command_unknown(channel);
}
MMachProbeDeleteCommand* MMachAbstract::NewMMachProbeDeleteCommand(MOutputChannel* channel, long, long) {
    return command_unknown(channel);
}
MMachProbeDefineCommand* MMachAbstract::NewMMachProbeDefineCommand(MOutputChannel* channel, long, long,
                                                                   const std::map<std::string, double>&) {
    return command_unknown(channel);
}
MMachProbeUnloadCommand* MMachAbstract::NewMMachProbeUnloadCommand(MOutputChannel* channel) {
    return command_unknown(channel);
}
MMachProbeChangeCommand* MMachAbstract::NewMMachProbeChangeCommand(MOutputChannel* channel, long, long) {
    return command_unknown(channel);
}
MMachProbeOffsetCommand* MMachAbstract::NewMMachProbeOffsetCommand(MOutputChannel* channel,
                                                                   const AxisTargetMap&) {
    return command_unknown(channel);
}
MMachResetCommand* MMachAbstract::NewMMachResetCommand(MOutputChannel* channel) {
    return command_unknown(channel);
}
MMachScanbaseCommand* MMachAbstract::NewMMachScanbaseCommand(MOutputChannel* channel, const AxisSet&) {
    return command_unknown(channel);
}
MMachScancircleCommand* MMachAbstract::NewMMachScancircleCommand(MOutputChannel* channel,
                                                                 const MMachCircle&) {
    return command_unknown(channel);
}
MMachScanconeCommand* MMachAbstract::NewMMachScanconeCommand(MOutputChannel* channel, const MMachCone&) {
    return command_unknown(channel);
}
MMachScandataCommand* MMachAbstract::NewMMachScandataCommand(MOutputChannel* channel,
                                                             const std::vector<std::string>&) {
    return command_unknown(channel);
}
MMachCommand* MMachAbstract::Reserved139(MOutputChannel* channel) { return command_unknown(channel); }
MMachScanpointCommand* MMachAbstract::NewMMachScanpointCommand(MOutputChannel* channel,
                                                               const MMachAxisTargets&) {
    return command_unknown(channel);
}
MMachMovepolyCommand* MMachAbstract::NewMMachMovepolyCommand(MOutputChannel* channel,
                                                             const std::vector<AxisTargetMap>&) {
    return command_unknown(channel);
}
MMachScanpolyCommand* MMachAbstract::NewMMachScanpolyCommand(MOutputChannel* channel,
                                                             const std::vector<AxisTargetMap>&) {
    return command_unknown(channel);
}
MMachCommand* MMachAbstract::Reserved143(MOutputChannel* channel) { return command_unknown(channel); }
MMachCommand* MMachAbstract::Reserved144(MOutputChannel* channel) { return command_unknown(channel); }
MMachCommand* MMachAbstract::Reserved145(MOutputChannel* channel) { return command_unknown(channel); }
MMachCommand* MMachAbstract::Reserved146(MOutputChannel* channel) { return command_unknown(channel); }
MMachWobbleCommand* MMachAbstract::NewMMachWobbleCommand(MOutputChannel* channel,
                                                         const MMachWobbleParameters&) {
    return command_unknown(channel);
}
