/*
 * A machine server inside the client's process: what a library exports so that a connection string can name
 * it ("zendrix-sim.dll"). Plain C, so that library and client may come from different compilers.
 *
 * The library exports one function, zx_server_library, which gives a table. Client and server speak the lines
 * of docs/protocol.md over the road of bytes that open() makes; the server says its hello first.
 *
 * Threads: open() may be called on any thread, for any number of connections at once. Of one connection, one
 * thread reads at a time and one writes at a time, both may do so at once; shutdown() may come on any
 * thread at any time. close() comes last and alone.
 *
 * Ownership: the table is the library's and stays as it is while the library is loaded. A connection is the
 * library's until close(). When the last one has been closed, no thread of the library runs any more, and
 * the client may unload it.
 *
 * No function lets an exception out, changes signals, locale or working directory, or writes to standard
 * streams.
 */
#ifndef ZX_SERVERLIBRARY_H
#define ZX_SERVERLIBRARY_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Counts up with every change that an older client or library couldn't live with. */
#define ZX_SERVER_LIBRARY_VERSION 1u

/* The name to look for, and the type of what is found. */
#define ZX_SERVER_LIBRARY_ENTRY "zx_server_library"

#if defined(_WIN32)
#define ZX_SERVER_LIBRARY_EXPORT __declspec(dllexport)
#else
#define ZX_SERVER_LIBRARY_EXPORT __attribute__((visibility("default")))
#endif

typedef struct ZXServerConnection ZXServerConnection;

/* How reading or writing went. */
enum {
    ZX_SERVER_DONE = 0,      /* `count` bytes were moved; all of them by a write */
    ZX_SERVER_TIMED_OUT = 1, /* the time is over; a write may have moved a part */
    ZX_SERVER_CLOSED = 2,    /* the server has closed, and all that it said was read; or after shutdown() */
    ZX_SERVER_RESET = 3,     /* the server has broken the connection off; what it said last may be lost */
    ZX_SERVER_FAILED = 4     /* something else, from now on */
};

typedef struct ZXServerLibrary {
    uint32_t version; /* ZX_SERVER_LIBRARY_VERSION; a client looks at nothing else if it is another */
    uint32_t size;    /* of this table, in bytes */

    /*
     * A new connection. `settings` is what the connection string holds behind the library's name and the
     * blank after it, never null; what it means is the library's business. Null is failure: then `error` has
     * got the reason, ended by NUL, at most error_size bytes with it.
     */
    ZXServerConnection* (*open)(const char* settings, char* error, size_t error_size);

    /* Waits for bytes, at most so many milliseconds, and takes what is there, 1 to `size` bytes. */
    int32_t (*read)(ZXServerConnection* connection, char* to, size_t size, uint32_t at_most, size_t* count);

    /* Hands over all bytes, or as many as the server takes within so many milliseconds. */
    int32_t (*write)(ZXServerConnection* connection, const char* bytes, size_t size, uint32_t at_most,
                     size_t* count);

    /* Ends reading and writing, now and from now on, and wakes whoever waits there. */
    void (*shutdown)(ZXServerConnection* connection);

    /* The connection is gone afterwards. May take as long as the server needs to stop its machine. */
    void (*close)(ZXServerConnection* connection);
} ZXServerLibrary;

/* Never null. */
typedef const ZXServerLibrary* ZXServerLibraryEntry(void);

#ifdef __cplusplus
}
#endif

#endif
