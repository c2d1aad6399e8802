// The commands whose virtual tables cross the boundary, as the host's class and the driver's are called; SCAN
// is as COMMAND, with measured points.
#pragma once

#define ALL_COMMANDS(COMMAND, SCAN)               \
    COMMAND(Get, Get)                             \
    COMMAND(Init, Init)                           \
    COMMAND(KeypadDisable, KeypadDisable)         \
    COMMAND(KeypadEnable, KeypadEnable)           \
    COMMAND(Modulo, Modulo)                       \
    COMMAND(Move, Move)                           \
    COMMAND(Movebase, Movebase)                   \
    COMMAND(Movecircle, MoveCircle)               \
    COMMAND(Movecone, MoveCone)                   \
    COMMAND(Movehome, Movehome)                   \
    COMMAND(Movepoly, Movepoly)                   \
    COMMAND(Movezero, Movezero)                   \
    COMMAND(ProbeChange, ProbeChange)             \
    COMMAND(ProbeDefine, ProbeDefine)             \
    COMMAND(ProbeDelete, ProbeDelete)             \
    COMMAND(ProbeLoad, ProbeLoad)                 \
    COMMAND(ProbeOffset, ProbeOffset)             \
    COMMAND(ProbeUnload, ProbeUnload)             \
    COMMAND(ProbesystemDefine, ProbesystemDefine) \
    COMMAND(ProbesystemDelete, ProbesystemDelete) \
    COMMAND(ProbesystemLoad, ProbesystemLoad)     \
    COMMAND(ProbesystemUnload, ProbesystemUnload) \
    COMMAND(Receive, Receive)                     \
    COMMAND(Reset, Reset)                         \
    COMMAND(Scanbase, Scanbase)                   \
    COMMAND(Scandata, Scandata)                   \
    COMMAND(Send, Send)                           \
    COMMAND(Set, Set)                             \
    COMMAND(SpinDisable, SpinDisable)             \
    COMMAND(SpinEnable, SpinEnable)               \
    COMMAND(Wobble, Wobble)                       \
    SCAN(Scan, Scan)                              \
    SCAN(Scancircle, Scancircle)                  \
    SCAN(Scancone, Scancone)                      \
    SCAN(Scanpoint, Scanpoint)                    \
    SCAN(Scanpoly, Scanpoly)
