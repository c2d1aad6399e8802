#include "clientoptions.h"

namespace serverdll {

ClientOptions& client_options() {
    static ClientOptions options;
    return options;
}

}  // namespace serverdll
