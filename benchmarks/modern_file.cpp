#include "modern_file.h"

#include <libdeflate.h>

#include <memory>
#include <stdexcept>

namespace Benchmarks {

std::string deflated(const std::string& text) {
    constexpr int best = 9;
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(best), &libdeflate_free_compressor);
    if (!compressor) throw std::runtime_error("no compressor");
    std::string result(libdeflate_zlib_compress_bound(compressor.get(), text.size()), '\0');
    result.resize(libdeflate_zlib_compress(compressor.get(), text.data(), text.size(),
                                           result.data(), result.size()));
    return result;
}

namespace {

std::string streamOf(std::string_view entries, std::string_view data) {
    std::string text = "<<";
    text.append(entries).append("/Length ").append(std::to_string(data.size()));
    return text.append(">>\nstream\n").append(data).append("\nendstream");
}

void appendNumber(std::string& bytes, std::uint64_t number, unsigned width) {
    while (width-- != 0)
        bytes += static_cast<char>(number >> 8 * width & 0xFFU);
}

} // namespace

std::size_t ModernFile::add(std::string_view value) {
    entries_.push_back({1, body_.size(), 0});
    body_.append(std::to_string(entries_.size())).append(" 0 obj\n").append(value);
    body_ += "\nendobj\n";
    return entries_.size();
}

std::size_t ModernFile::addStream(std::string_view entries, std::string_view data) {
    return add(streamOf(entries, data));
}

std::size_t ModernFile::addMember(std::size_t stream, std::size_t index) {
    entries_.push_back({2, stream, index});
    return entries_.size();
}

std::size_t ModernFile::addObjects(std::size_t first, const std::vector<std::string>& values,
                                   std::string_view entries) {
    std::string numbers;
    std::string objects;
    for (std::size_t index = 0; index < values.size(); ++index) {
        numbers += std::to_string(first + index) + " " + std::to_string(objects.size()) + " ";
        objects += values[index] + " ";
    }
    std::string all = "/Type/ObjStm/Filter/FlateDecode/N ";
    all.append(std::to_string(values.size())).append("/First ");
    all.append(std::to_string(numbers.size())).append(entries);
    return addStream(all, deflated(numbers + objects));
}

std::string ModernFile::table() const {
    std::string table;
    const auto append = [&table](const Entry& entry) {
        appendNumber(table, entry.kind, 1);
        appendNumber(table, entry.place, 4);
        appendNumber(table, entry.index, 2);
    };
    append({0, 0, 0});
    for (const Entry& entry : entries_)
        append(entry);
    return table;
}

std::string ModernFile::file(const std::string& table, std::string_view entries) const {
    std::string all = "/Type/XRef/Root 1 0 R/Filter/FlateDecode";
    if (entries.find("/Size") == std::string_view::npos) {
        all.append("/Size ").append(std::to_string(next()));
    }
    return body_ + std::to_string(next()) + " 0 obj\n" +
           streamOf(all.append(entries), deflated(table)) + "\nendobj\nstartxref\n" +
           std::to_string(body_.size()) + "\n%%EOF\n";
}

} // namespace Benchmarks
