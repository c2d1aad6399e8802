// CZendrixCOM: the client of one machine server. Everything that the driver does with a machine passes
// through this class; its wire protocol is told in docs/protocol.md.
//
// Failure. Every operation that returns bool answers false on failure or, once ThrowExceptions(true) is in
// force, throws CZendrixError. Operations that return a value give an empty one, or throw.
// The error callback runs before the call reports its failure, with the transaction's id or, for everything
// else, with id 0: on the client's thread, and the call waits for it up to a second; or, if the call is made
// inside a callback, on the spot. A call that fails for want of a connection runs none.
//
// Transactions. An operation with a `long* tid` writes the id there before the request leaves, so no callback
// can speak of an id that the caller doesn't know yet; write and read it through std::atomic_ref where
// another thread may look. In mode ZX_ASYNC (the start value) such an operation returns once the server has
// accepted the request, and the complete callback brings the id when it has ended. A refused request leaves 0
// in *tid and completes nothing. In mode ZX_SYNC it returns at the end of the transaction.
//
// Threads. Any thread may call any operation at any time, also from inside a callback. The callbacks run one
// after the other, in the order in which the server spoke, on one thread of the client's own.
// Installing a callback replaces the old one at once, and returns only when the old one isn't running (unless
// it is called from inside it). An exception that leaves a callback is logged; the client goes on.
//
// Loss. A client that lost its connection delivers what it had received whole, completes id 0 so that the
// host comes to look, and falls silent: every call fails in bounded time, and it never reconnects by itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "mmachproberecords.h"

#if defined(_WIN32)
#if defined(ZX_BUILDING_serverdll)
#define SERVERDLL_API __declspec(dllexport)
#else
#define SERVERDLL_API
#endif
#else
#define SERVERDLL_API __attribute__((visibility("default")))
#endif

// What a failed operation throws. m_text is the server's or the client's text, without keyword or quotes.
class SERVERDLL_API CZendrixError {
public:
    explicit CZendrixError(std::string text) : m_text(std::move(text)) {}

    std::string m_text;
};

// One axis in a position list. `axis` is borrowed for the time of the call.
struct Position {
    const char* axis;
    double value;       // target or measured value; out for Get
    std::int32_t flag;  // one of the values below
};

// Position::flag
enum : std::int32_t {
    ZX_POSITION_PLAIN = -1,     // a plain entry
    ZX_POSITION_FLAGGED = 0,    // a target whose flag is set: relative to where the axis stands
    ZX_POSITION_NO_TARGET = 1,  // an axis without a target in a scan; the value is undefined
    ZX_POSITION_LOWEST = 2,     // the value is the most negative double: the lower limit of travel
    ZX_POSITION_HIGHEST = 3     // the value is the largest double: the upper limit of travel
};

// The description of one axis or pseudo-axis.
struct CAxis {
    std::string name;
    std::int32_t kind = 0;  // 0 to 3, or 4: inactive
    double number1 = 0.0;   // numbers in the units of the axis (mm or degrees)
    double number2 = 0.0;   // of the pseudo-axes "probe" and "tip": the highest number
    double number3 = 0.0;
    double number4 = 0.0;
    double number5 = 0.0;
    double step = 0.0;           // zero: the axis takes only the values below
    std::vector<double> values;  // allowed discrete values
};

// One probe-system name with its defined ids.
struct CProbesystemList {
    std::string name;
    std::vector<CProbesystemEntry> entries;
};

// The type of the loaded probe system.
struct Probesystemtype {
    std::int32_t kind = 0;  // 0 none, 1 or 2
    std::int32_t a = 0;     // counts for kinds 1 and 2
    std::int32_t b = 0;     // counts for kind 2
    double c = 0.0;         // counts for kinds 1 and 2
    double d = 0.0;         // counts for kind 2
};

enum SyncType : int { ZX_ASYNC = 0, ZX_SYNC = 1 };

// A connection that several clients could share. This client always holds one of its own; pass null.
class CZXConnection;

using ZXAsyncCallback = void (*)(void* user, const char* text);
using ZXMessageCallback = void (*)(void* user, long tid, const char* text);  // error and warning
using ZXCompleteCallback = void (*)(void* user, long tid);
using ZXDataCallback = void (*)(void* user, unsigned count, double* const values);

class SERVERDLL_API CZendrixCOM {
public:
    // Connects to `server`, "host port". The first callback, if given, receives one line of progress per
    // stage of connecting, on the caller's thread. Throws CZendrixError if no connection can be made; a
    // server that connects but doesn't say a proper hello in time leaves a client without a connection, whose
    // calls all fail with the cause. Connecting takes at most 3 s and the hello 2 s; looking up a host's name
    // takes what the system takes for it.
    CZendrixCOM(void (*progress)(void* user, const char* text), void* user, const char* server,
                CZXConnection* connection);
    // Disconnects and ends the client's threads first; calls that wait on other threads fail at once.
    // No callback runs after it has returned. Not from inside a callback.
    ~CZendrixCOM();
    CZendrixCOM(const CZendrixCOM&) = delete;
    CZendrixCOM& operator=(const CZendrixCOM&) = delete;

    bool ThrowExceptions(bool on);
    bool HasConnection() const;  // cheap
    bool SetSync3(SyncType mode);
    bool GetSync3(SyncType* mode);
    bool Master();  // enables asynchronous events for this client

    // Takes and gives back the machine for one command. With false it waits a bounded time for another
    // holder, with true it doesn't wait; then it fails with the server's text. Giving back makes no
    // difference between the two.
    bool GetMachine(bool at_once);
    bool ReleaseMachine(bool at_once);
    bool Abort(long tid);
    long GetMajorRevision();  // revision of the protocol, from the server's hello
    long GetMinorRevision();
    long GetLatency();  // the last measured round trip in microseconds, -1 if there is none

    // Callbacks. Null removes one. The `count` doubles of a data callback are valid during the call only.
    void SetAsyncCallback(ZXAsyncCallback callback, void* user);
    void GetAsyncCallback(ZXAsyncCallback& callback, void*& user);
    void SetErrorMsgCallback(ZXMessageCallback callback, void* user);
    void GetErrorMsgCallback(ZXMessageCallback& callback, void*& user);
    void SetWarningMsgCallback(ZXMessageCallback callback, void* user);
    void GetWarningMsgCallback(ZXMessageCallback& callback, void*& user);
    void SetCommandCompleteCallback(ZXCompleteCallback callback, void* user);
    void SetScanCallback(ZXDataCallback callback, void* user);
    void SetWatchAxisCallback(ZXDataCallback callback, void* user);

    // The machine.
    std::string GetMachineName();
    std::string GetMachineRevision();
    std::string GetSerialNumber();
    std::map<std::string, std::string> GetComponentsMap();  // name to version
    std::map<std::string, std::string> GetOptionsMap();
    bool CommandSet(std::vector<std::string>& words, const char* filter);
    bool Capabilities(std::map<std::string, CAxis>& axes, bool all);  // all: pseudo-axes too
    bool InitList(std::vector<std::string>& axes);
    bool InitActive(std::vector<std::string>& axes);
    bool KeyPadList(std::vector<std::string>& axes, bool inactive_too);
    bool KeyPadActive(std::vector<std::string>& axes);
    bool SpinList(std::vector<std::string>& axes);
    bool SpinActive(std::vector<std::string>& axes, std::vector<double>& values);

    // Values and queries. Lists are replaced, not appended to.
    bool Get(const char* axis, double* value);
    bool Get(std::vector<Position>& positions);
    bool ScanAxis(std::size_t count, const char** axes);
    bool GetWobble(double* p1, double* p2, double* p3, double* p4, double* p5, double* p6);
    bool WatchAxisRT(long interval, long second, std::vector<std::string>& axes);
    bool WatchAxisRT(long interval, long second, std::size_t count, const char** axes);
    bool GetProbesystemList(std::vector<std::string>& names, const char* name);
    bool GetProbesystemList(std::vector<CProbesystemList>& records, const char* name);
    bool ProbesystemInfo(std::string& name, long& id);
    bool ProbesystemType(Probesystemtype& type);
    bool ProbeList(std::vector<CProbe>& probes, long probe, long tip);
    // A raw command line. With `tid` null it waits and fills `reply` with the bodies of the data lines;
    // otherwise it starts a transaction.
    bool Execute(const char* command, std::vector<std::string>& reply, long* tid);

    // Actions.
    bool Init(long* tid);
    bool InitAxes(std::vector<std::string>& axes, long* tid);
    bool Reset();
    bool Set(std::vector<Position> positions, long* tid);
    bool Modulo(std::vector<std::string>& axes);
    bool Move(std::size_t count, Position* targets, long* tid);
    bool MoveZero(std::size_t count, Position* targets, long* tid);
    bool MovePoly(std::size_t points, std::size_t count, Position* targets, long* tid);
    bool MoveCircle(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                    std::size_t count, Position* targets, long* tid);
    bool MoveCone(double p1, double p2, double p3, double p4, double p5, double p6, double p7, double p8,
                  double p9, std::size_t count, Position* targets, long* tid);
    bool SetMoveBase(std::vector<std::string>& axes);
    bool Scan(std::size_t count, Position* targets, long* tid);
    bool ScanPoint(std::size_t count, Position* targets, long* tid);
    bool ScanPoly(std::size_t points, std::size_t count, Position* targets, long* tid);
    bool ScanCircle(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                    std::size_t count, Position* targets, long* tid);
    bool ScanCone(double p1, double p2, double p3, double p4, double p5, double p6, double p7, double p8,
                  double p9, std::size_t count, Position* targets, long* tid);
    bool ScanData(std::vector<std::string>& names, long* tid);
    bool SetScanBase(std::vector<std::string>& axes);
    bool ProbeLoad(long probe, long tip, long* tid);
    bool ProbeChange(long probe, long tip, long* tid);
    bool ProbeUnload(long* tid);
    bool ProbeOffset(std::size_t count, Position* offsets, long* tid);
    bool ProbeDefine(long probe, long tip, double x1, double x2, double x3, double x4);
    bool ProbeDelete(long probe, long tip);
    bool ProbesystemLoad(const char* name, long id, long* tid);
    bool ProbesystemDefine(const char* name, long id, double x1, double x2, double x3, double x4, double x5,
                           double x6);
    bool ProbesystemDelete(const char* name, long id);
    bool KeyPad(bool enable, std::vector<std::string>& axes, long* tid);
    bool SpinEnable(std::vector<std::string>& axes);
    bool SpinDisable(std::vector<std::string>& axes);
    bool SetWobble(double p1, double p2, double p3, double p4, double p5, double p6);
    // A named block of data, both of any bytes. A long one leaves in parts; the machine has it whole when
    // this returns, or nothing of it under that name if it fails.
    bool Send(std::string name, std::string data);
    // Starts the transfer of a named block. The reply lines are kept for TakeReplyLine; in mode ZX_SYNC
    // `data` gets them joined, in mode ZX_ASYNC it isn't touched.
    bool Receive(std::string name, std::string& data, long* tid);

    // The reply lines of a Receive, from its request until they are all taken and its complete callback has
    // run. A line stands as it came: `"TEXT"`, or first `base64 "TEXT"`. At most 256 MiB are kept for a
    // client; a block that is longer ends with an error, and none of its lines.
    bool HasReceiver(long id);
    std::size_t ReplyLineCount(long id);
    bool TakeReplyLine(long id, std::string& line);  // the oldest; false if there is none
    std::size_t PerLineSize();                       // the longest line so far, for reserving

private:
    class Client;
    Client* m_client;
};
