// Makes the compiler lay out every class with virtual operations that host and plug-in share. It is only ever
// compiled to print those layouts.
#include "boundary_commands.h"
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
#include "mmachabstract.h"
#include "mmachnotifier.h"
#include "moutputchannel.h"

template <class T>
void destroy(T* object) {
    delete object;
}

template void destroy(MMachAbstract*);
template void destroy(MMachNotifier*);
template void destroy(MOutputChannel*);
template void destroy(MMachCommand*);
template void destroy(M2ZendrixMachAbstract*);
template void destroy(M2ZendrixCommand*);
template void destroy(M2ZendrixGenericScanCommand*);

#define DESTROY(face, driver)                     \
    template void destroy(MMach##face##Command*); \
    template void destroy(M2Zendrix##driver##Command*);
ALL_COMMANDS(DESTROY, DESTROY)
