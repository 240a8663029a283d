#pragma once

#include "support/document_builder.h"
#include "support/documents.h"

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

/// Puts a file with object streams and a cross-reference stream together. Catalog 1, page tree 2,
/// page 3; the catalog refers to object 9.
class ModernFile {
public:
    ModernFile() {
        object(1, "<< /Type /Catalog /Pages 2 0 R /X 9 0 R >>");
        object(2, "<< /Type /Pages /Kids [ 3 0 R ] /Count 1 >>");
        object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 9 9 ] >>");
    }

    ModernFile& object(std::uint32_t id, std::string_view body) {
        entries_[id] = {1, bytes_.size(), 0};
        bytes_ += std::to_string(id) + " 0 obj\n" + std::string(body) + "\nendobj\n";
        return *this;
    }

    /// Object stream `id`, with the objects `held`; `data` is stored as `entries` say.
    ModernFile& objectStream(std::uint32_t id, const std::vector<std::uint32_t>& held,
                             const std::string& entries, const std::string& data) {
        object(id, "<< /Type /ObjStm /N " + std::to_string(held.size()) + " " + entries +
                       " >>\nstream\n" + data + "\nendstream");
        for (std::uint32_t index = 0; index < held.size(); ++index)
            entries_[held[index]] = {2, id, index};
        return *this;
    }

    /// The file; `encode` makes the data of the cross-reference stream what `filter` says.
    template <class Encode>
    [[nodiscard]] std::string bytes(const std::string& filter, Encode encode) const {
        const std::uint32_t size = entries_.rbegin()->first + 1;
        std::string table;
        for (std::uint32_t id = 0; id < size; ++id) {
            const auto entry = entries_.find(id);
            for (int place = 0; place < 9; ++place) {
                const std::uint64_t field = entry == entries_.end()
                                                ? 0
                                                : entry->second[place == 0  ? 0
                                                                : place < 5 ? 1
                                                                            : 2];
                table += static_cast<char>(place == 0 ? field : field >> (8 * ((8 - place) % 4)));
            }
        }
        const std::string data = encode(table);
        return bytes_ + std::to_string(size) + " 0 obj\n<< /Type /XRef /W [ 1 4 4 ] /Root 1 0 R " +
               "/Size " + std::to_string(size) + " " + filter + " /Length " +
               std::to_string(data.size()) + " >>\nstream\n" + data +
               "\nendstream\nendobj\nstartxref\n" + std::to_string(bytes_.size()) + "\n%%EOF\n";
    }
    [[nodiscard]] std::string bytes() const { return bytes("/Filter /FlateDecode", deflated); }

private:
    std::string bytes_ = "%PDF-1.5\n";
    std::map<std::uint32_t, std::array<std::uint64_t, 3>> entries_;
};

} // namespace Support
