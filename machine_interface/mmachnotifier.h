// What the host implements to be woken.
#pragma once

class MMachNotifier {
public:
    virtual ~MMachNotifier() = default;

    // Non-zero while a notification waits to be looked at. Host's thread.
    virtual int HasNotification() = 0;

    // Something new waits to be fetched. Called from any thread, with no lock of the driver held; whatever
    // blocks here holds up every callback of the machine. False means that the notification failed.
    virtual bool Notify() = 0;
};
