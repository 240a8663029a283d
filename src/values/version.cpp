#include <pdf/version.h>

namespace Libraries::Files::PDF {

const char* libraryVersion() noexcept {
    return FILES_PDF_VERSION;
}

} // namespace Libraries::Files::PDF
