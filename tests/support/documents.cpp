#include "support/documents.h"

#include "host/guard.h"
#include "values/scalars.h"

#include <libdeflate.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Support {

using Host::Ref;

Ref<Host::MemoryStripe> stripeOf(std::string_view bytes) {
    const auto* data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    return Host::MemoryStripe::create(std::span(data, bytes.size()));
}

Ref<PDF::Document> open(std::string_view bytes) {
    return PDF::Document::create(stripeOf(bytes));
}

std::string write(PDF::Document& document) {
    const Ref<Host::MemoryStripe> target = Host::MemoryStripe::create();
    return document.write(target) ? contentsOf(target) : std::string();
}

Ref<PDF::Value> valueOf(const PDF::Document& document, std::uint32_t id, std::uint16_t generation) {
    const auto object = document.getObject(Host::makeOrThrow<PDF::ObjectRefObj>(id, generation));
    return object ? object->value() : nullptr;
}

Ref<PDF::Stream> streamOf(const PDF::Document& document, std::uint32_t id) {
    return Host::cast<PDF::Stream>(valueOf(document, id));
}

std::string contentsOf(const Ref<Interfaces::Stripe>& stripe) {
    if (!stripe) return "(null)";
    std::string bytes(stripe->size(), '\0');
    stripe->position(0);
    bytes.resize(stripe->readBytes(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()));
    return bytes;
}

std::string deflated(std::string_view data) {
    libdeflate_compressor* compressor = libdeflate_alloc_compressor(6);
    std::string out(libdeflate_zlib_compress_bound(compressor, data.size()), '\0');
    out.resize(
        libdeflate_zlib_compress(compressor, data.data(), data.size(), out.data(), out.size()));
    libdeflate_free_compressor(compressor);
    return out;
}

std::string sample(std::string_view name) {
    std::ifstream file(std::string(FILES_PDF_SAMPLES "/").append(name), std::ios::binary);
    if (!file) throw std::runtime_error("no sample " + std::string(name));
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> sampleNames() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(FILES_PDF_SAMPLES)) {
        if (file.path().extension() == ".pdf") names.push_back(file.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

} // namespace Support
