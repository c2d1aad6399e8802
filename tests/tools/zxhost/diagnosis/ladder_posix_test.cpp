// The ladder to a machine at a serial line in software.
#include "ladder_fixture.h"

namespace zxhost {
namespace {

class LadderPosix : public LadderTest {};

TEST_F(LadderPosix, ASerialLineHoldsEveryRungToo) { climb_without_adapter(test::serve_serial(server())); }

}  // namespace
}  // namespace zxhost
