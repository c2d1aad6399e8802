// The commands whose virtual tables cross the boundary. FACE is a host's class that has no class of the
// driver yet; BOTH names the host's class and the driver's; SCAN is as BOTH, with measured points.
#pragma once

#define ALL_COMMANDS(FACE, BOTH, SCAN) \
    BOTH(Get, Get)                     \
    BOTH(Init, Init)                   \
    BOTH(Modulo, Modulo)               \
    BOTH(Move, Move)                   \
    BOTH(Movebase, Movebase)           \
    BOTH(Movecircle, MoveCircle)       \
    BOTH(Movecone, MoveCone)           \
    BOTH(Movehome, Movehome)           \
    BOTH(Movepoly, Movepoly)           \
    BOTH(Movezero, Movezero)           \
    BOTH(Reset, Reset)                 \
    BOTH(Scanbase, Scanbase)           \
    BOTH(Scandata, Scandata)           \
    BOTH(Set, Set)                     \
    SCAN(Scan, Scan)                   \
    SCAN(Scancircle, Scancircle)       \
    SCAN(Scancone, Scancone)           \
    SCAN(Scanpoint, Scanpoint)         \
    SCAN(Scanpoly, Scanpoly)           \
    FACE(KeypadDisable)                \
    FACE(KeypadEnable)                 \
    FACE(ProbeChange)                  \
    FACE(ProbeDefine)                  \
    FACE(ProbeDelete)                  \
    FACE(ProbeLoad)                    \
    FACE(ProbeOffset)                  \
    FACE(ProbeUnload)                  \
    FACE(ProbesystemDefine)            \
    FACE(ProbesystemDelete)            \
    FACE(ProbesystemLoad)              \
    FACE(ProbesystemUnload)            \
    FACE(Receive)                      \
    FACE(Send)                         \
    FACE(SpinDisable)                  \
    FACE(SpinEnable)                   \
    FACE(Wobble)
