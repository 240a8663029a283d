#include "object_file.h"

namespace Benchmarks {

std::string fileOf(const std::string& body, const std::vector<std::size_t>& offsets) {
    std::string file = body + "\nxref\n0 " + std::to_string(offsets.size() + 1) + "\n0 65535 f\n";
    for (const std::size_t offset : offsets)
        file += std::to_string(offset) + " 0 n\n";
    return file + "trailer<</Root 1 0 R>>\nstartxref\n" + std::to_string(body.size() + 1) +
           "\n%%EOF\n";
}

std::string reference(std::size_t number) {
    return std::to_string(number) + " 0 R ";
}

std::string repeated(std::string_view unit, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes)
        text += unit;
    return text;
}

std::string streamsInsideEachOther(std::size_t size) {
    constexpr std::string_view end = "\nendstream\nendobj\n";
    constexpr std::size_t head = 60; // bytes before the data, which the next head begins
    std::string body = "%PDF-1.7\n";
    std::vector<std::size_t> offsets;
    const auto begin = [&](const std::string& text) {
        offsets.push_back(body.size());
        body += std::to_string(offsets.size()) + " 0 obj\n" + text;
    };
    begin("<</Type/Catalog/Pages 2 0 R>>\nendobj\n");
    begin("<</Type/Pages/Count 0/Kids[]>>\nendobj\n");
    for (std::size_t inside = size / 100; inside-- != 0;) {
        begin("<</Length " + std::to_string(inside * (head + end.size())) + ">>");
        body.resize(offsets.back() + head - 8, ' ');
        body += "\nstream\n";
    }
    for (std::size_t level = 0; level < size / 100; ++level)
        body += end;
    return fileOf(body, offsets);
}

std::size_t ObjectFile::add(std::string_view value) {
    offsets_.push_back(body_.size());
    body_.append(std::to_string(offsets_.size())).append(" 0 obj\n").append(value);
    body_ += "\nendobj\n";
    return offsets_.size();
}

std::size_t ObjectFile::addStream(std::string_view entries, std::string_view data) {
    std::string text = "<<";
    text.append(entries).append("/Length ").append(std::to_string(data.size()));
    return add(text.append(">>\nstream\n").append(data).append("\nendstream"));
}

std::size_t ObjectFile::size() const noexcept {
    constexpr std::size_t tableEntry = 12;
    return body_.size() + offsets_.size() * tableEntry;
}

std::string ObjectFile::file() const {
    return fileOf(body_, offsets_);
}

} // namespace Benchmarks
