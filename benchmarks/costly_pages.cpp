#include "costly.h"
#include "object_file.h"

#include <pdf/tools/pages.h>

namespace Benchmarks {
namespace {

using Host::Ref;
using Libraries::Files::PDF::Document;
namespace Tools = Libraries::Files::PDF::Tools;

/// `unit` until there are so many bytes of it.
/// A catalog, and the root of a page tree, object 2.
ObjectFile treeWith(std::string_view kids) {
    ObjectFile file;
    file.add("<</Type/Catalog/Pages 2 0 R>>");
    file.add("<</Type/Pages/Count 1/Kids" + std::string(kids) + ">>");
    return file;
}

/// So many bytes of entries with keys of their own.
std::string manyKeys(std::size_t bytes) {
    std::string text;
    for (std::size_t key = 0; text.size() < bytes; ++key)
        text += "/K" + std::to_string(key) + " 0";
    return text;
}

std::string sharedKids(std::size_t size) {
    constexpr std::size_t node = 52; // bytes of one, with its entries
    std::string nodes = "[";
    for (std::size_t index = 0; index < size / 2 / node; ++index)
        nodes += reference(5 + index);
    ObjectFile file = treeWith(nodes + "]");
    file.add("<</Type/Page>>");
    file.add("[" + repeated("3 0 R ", size / 2) + "]");
    while (file.next() < 5 + size / 2 / node)
        file.add("<</Type/Pages/Kids 4 0 R>>");
    return file.file();
}

/// One page with `entries`, listed until the file is full.
std::string listedOften(std::size_t size, const std::string& entries) {
    const std::size_t rest = size > entries.size() ? size - entries.size() : 0;
    ObjectFile file = treeWith("[" + repeated("3 0 R ", rest) + "]");
    file.add("<</Type/Page" + entries + ">>");
    return file.file();
}

std::string sharedContents(std::size_t size) {
    constexpr std::size_t page = 75;
    std::string pages = "[";
    for (std::size_t index = 0; index < size / 2 / page; ++index)
        pages += reference(5 + index);
    ObjectFile file = treeWith(pages + "]");
    file.addStream("", "q Q");
    file.add("[" + repeated("3 0 R ", size / 2) + "]");
    while (file.next() < 5 + size / 2 / page)
        file.add("<</Type/Page/Contents 4 0 R/Parent 2 0 R>>");
    return file.file();
}

std::string nodesWithinNodes(std::size_t size) {
    ObjectFile file = treeWith("[3 0 R]");
    while (file.size() < size)
        file.add("<</Type/Pages/Kids[" + reference(file.next() + 1) + "]>>");
    file.add("<</Type/Page>>");
    return file.file();
}

Tools::Result<void> flatten(const Ref<Document>& document) {
    auto pages = Tools::Pages::of(document);
    return pages ? pages->flatten() : Tools::Unexpected(pages.error());
}

constexpr CostlyFile files[] = {
    {"pages: nodes share their kids", sharedKids, lookAt<Tools::Pages::of>, Ending::Refused},
    {"pages: one listed often", [](std::size_t size) { return listedOften(size, ""); },
     changeAndSave<flatten>, Ending::Done},
    {"pages: one of many keys listed often",
     [](std::size_t size) { return listedOften(size, manyKeys(size / 2)); }, changeAndSave<flatten>,
     Ending::Refused},
    {"pages: one with a long text listed often",
     [](std::size_t size) { return listedOften(size, "/T(" + std::string(size / 2, 'x') + ")"); },
     changeAndSave<flatten>, Ending::Refused},
    {"pages: all share their contents", sharedContents, changeAndSave<flatten>, Ending::Refused},
    {"pages: nodes within nodes", nodesWithinNodes, changeAndSave<flatten>, Ending::Done},
};

} // namespace

std::span<const CostlyFile> costlyPages() {
    return files;
}

} // namespace Benchmarks
