// M2ZendrixGenericScanCommand: the bridge of measured points from the client's thread to the host's.
//
// From the constructor to the destructor the client's scan callback is this object's: points that come after
// the end of the command are queued too, and what nobody took is dropped with the object. Scan commands run
// one after the other.
#pragma once

#include <vector>

#include "m2zendrixcommand.h"
#include "mstopwatch.h"
#include "scanpointqueue.h"

class M2ZendrixGenericScanCommand : public M2ZendrixCommand {
public:
    M2ZendrixGenericScanCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output);
    ~M2ZendrixGenericScanCommand() override;

    // Swaps the oldest point into `point` and returns true; false, and `point` as it was, if none waits. The
    // memory that the host hands in that way is used again for later points.
    virtual bool GetNextScanPoint(std::vector<double>& point);

private:
    static void scan_callback(void* user, unsigned count, double* const values);

    void append_scratch();
    void wake_host();

    os::Mutex m_scanLock;
    ScanPointQueue m_points OS_GUARDED_BY(m_scanLock);
    std::vector<double> m_scratch;  // the newest point; the client's thread alone
    MStopwatch m_notifyTimer;       // since the last wake-up; the client's thread alone
};
