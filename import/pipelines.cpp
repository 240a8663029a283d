#include "pipelines.h"

#include <new>
#include <stdexcept>

namespace Libraries::Files::PDF::Import {

void Meter::write(unsigned char const* data, size_t len) {
    exceeded_ = exceeded_ || len > left_;
    if (exceeded_) throw std::length_error("more than the limit allows");
    left_ -= len;
    passed_ += len;
    if (Pipeline* behind = getNext(true)) behind->write(data, len);
}

void Meter::finish() {
    if (Pipeline* behind = getNext(true)) behind->finish();
}

void Collector::write(unsigned char const* data, size_t len) {
    full_ = full_ || !bytes_.append(data, len);
    check();
}

void Collector::check() const {
    if (full_) throw std::bad_alloc();
}

} // namespace Libraries::Files::PDF::Import
