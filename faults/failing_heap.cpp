// Takes the place of operator new, and - by the linker's --wrap - of the C functions.

#include "failing_heap.h"

#include <cstddef>
#include <cstdlib>
#include <new>

struct libdeflate_compressor;

namespace {

using Support::FailingHeap;

std::int64_t pieces = 0;
std::uint64_t left = 0; // allocations up to the one that fails, itself included
bool failing = false;
bool failed = false;
FailingHeap::Fault kind = FailingHeap::Fault::Once;

template <class Allocate>
auto counted(bool isNew, Allocate allocate) -> decltype(allocate()) {
    failing = failing || (left != 0 && --left == 0);
    if (failing) {
        failing = kind == FailingHeap::Fault::FromThenOn;
        failed = true;
        return nullptr;
    }
    const auto piece = allocate();
    if (isNew && piece != nullptr) ++pieces;
    return piece;
}

} // namespace

extern "C" {

void* __real_malloc(std::size_t size);
void* __real_realloc(void* piece, std::size_t size);
void __real_free(void* piece);
libdeflate_compressor* __real_libdeflate_alloc_compressor(int level);
void __real_libdeflate_free_compressor(libdeflate_compressor* compressor);

void* __wrap_malloc(std::size_t size) {
    return counted(true, [=] { return __real_malloc(size); });
}

void* __wrap_realloc(void* piece, std::size_t size) {
    return counted(piece == nullptr, [=] { return __real_realloc(piece, size); });
}

void __wrap_free(void* piece) {
    if (piece != nullptr) --pieces;
    __real_free(piece);
}

libdeflate_compressor* __wrap_libdeflate_alloc_compressor(int level) {
    return counted(true, [=] { return __real_libdeflate_alloc_compressor(level); });
}

void __wrap_libdeflate_free_compressor(libdeflate_compressor* compressor) {
    if (compressor != nullptr) --pieces;
    __real_libdeflate_free_compressor(compressor);
}

} // extern "C"

void* operator new(std::size_t size) {
    void* const piece = std::malloc(size);
    if (piece == nullptr) throw std::bad_alloc();
    return piece;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size);
}
void operator delete(void* piece) noexcept {
    std::free(piece);
}
void operator delete(void* piece, std::size_t) noexcept {
    std::free(piece);
}

void FailingHeap::failAt(std::uint64_t number, Fault fault) noexcept {
    kind = fault;
    failing = failed = false;
    left = number;
}

bool FailingHeap::stop() noexcept {
    failing = false;
    left = 0;
    return failed;
}

std::int64_t FailingHeap::live() noexcept {
    return pieces;
}
