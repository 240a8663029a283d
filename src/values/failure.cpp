#include "values/failure.h"

namespace Libraries::Files::PDF {

const std::uint32_t logFilter = Host::SysLogFilter::reg("PDF");

} // namespace Libraries::Files::PDF
