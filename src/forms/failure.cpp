#include "forms/failure.h"

namespace Libraries::Files::PDF {

const std::uint32_t formLogFilter = Host::SysLogFilter::reg("Lib.File.PDF.Form");

} // namespace Libraries::Files::PDF
