#include "generate.h"

#include <host/stream.h>
#include <host/string.h>
#include <pdf/form.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <random>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace Benchmarks {
namespace {

constexpr std::size_t contentSize = 2048;
constexpr std::size_t distinctContents = 64;

// Collects objects in the order of their numbers and finishes the file.
class Writer {
public:
    Writer() { sample_.bytes = "%PDF-1.4\n"; }

    [[nodiscard]] std::size_t nextId() const { return offsets_.size() + 1; }

    void object(std::string_view value) {
        offsets_.push_back(sample_.bytes.size());
        append(std::to_string(offsets_.size()), " 0 obj\n", value, "\nendobj\n");
    }

    void stream(std::string_view stored, std::size_t decodedSize) {
        offsets_.push_back(sample_.bytes.size());
        append(std::to_string(offsets_.size()), " 0 obj\n<</Length ", std::to_string(stored.size()),
               "/Filter/FlateDecode>>\nstream\n", stored, "\nendstream\nendobj\n");
        sample_.storedStreams += stored.size();
        sample_.decodedStreams += decodedSize;
    }

    Sample finish(std::size_t pages) {
        const std::string start = std::to_string(sample_.bytes.size());
        const std::string size = std::to_string(offsets_.size() + 1);
        append("xref\n0 ", size, "\n0000000000 65535 f \n");
        for (const std::size_t offset : offsets_) {
            std::array<char, 32> entry{};
            std::snprintf(entry.data(), entry.size(), "%010zu 00000 n \n", offset);
            append(entry.data());
        }
        append("trailer\n<</Size ", size, "/Root 1 0 R>>\nstartxref\n", start, "\n%%EOF\n");
        sample_.objects = offsets_.size();
        sample_.pages = pages;
        return std::move(sample_);
    }

private:
    template <class... Parts>
    void append(const Parts&... parts) {
        (sample_.bytes.append(parts), ...);
    }

    Sample sample_;
    std::vector<std::size_t> offsets_;
};

std::string compress(std::string_view data) {
    const auto filter = Host::ZlibFilter::createCompressorStream(0);
    std::string result(data.size() + 1024, '\0');
    const std::span output(reinterpret_cast<std::uint8_t*>(result.data()), result.size());
    const std::span input(reinterpret_cast<const std::uint8_t*>(data.data()), data.size());
    Interfaces::BlockFilter::Progress progress;
    if (!filter || !filter->convert(input, output, progress) || progress.consumed != data.size()) {
        throw std::runtime_error("a content stream was not compressed");
    }
    std::size_t size = progress.produced;
    std::uint64_t produced = 0;
    auto state = Interfaces::BlockFilter::Flush::More;
    while (state == Interfaces::BlockFilter::Flush::More) {
        state = filter->flush(output.subspan(size), produced);
        size += state == Interfaces::BlockFilter::Flush::More ? produced : 0;
    }
    if (state == Interfaces::BlockFilter::Flush::Failed) {
        throw std::runtime_error("a content stream was not finished");
    }
    result.resize(size);
    return result;
}

std::string textOperators(std::minstd_rand& random) {
    static constexpr std::string_view words[] = {
        "the",     "of",       "measure", "which",  "quarter", "amount",  "and",     "between",
        "invoice", "delivery", "is",      "stated", "paper",   "without", "several", "customer"};
    std::string result = "BT\n/F1 10.5 Tf\n";
    for (int line = 0; result.size() < contentSize; ++line) {
        result += "1 0 0 1 72 " + std::to_string(760 - line * 13) + "." +
                  std::to_string(random() % 1000) + " Tm\n(";
        for (int word = 0; word < 9; ++word) {
            result += words[random() % std::size(words)];
            result += ' ';
        }
        result += ") Tj\n";
    }
    return result + "ET\n";
}

std::string catalogValue() {
    return "<</Type/Catalog/Pages 2 0 R>>";
}

// The page tree's root, for `count` pages numbered from `first` in steps of `step`.
std::string pagesValue(std::size_t first, std::size_t step, std::size_t count) {
    std::string result = "<</Type/Pages/Count " + std::to_string(count) + "/Kids[";
    for (std::size_t page = 0; page < count; ++page) {
        result += std::to_string(first + page * step) + " 0 R ";
    }
    return result + "]>>";
}

Sample textDocument(std::size_t objects) {
    struct Content {
        std::string stored;
        std::size_t decodedSize;
    };
    std::minstd_rand random(1);
    std::vector<Content> contents;
    for (std::size_t index = 0; index < distinctContents; ++index) {
        const std::string data = textOperators(random);
        contents.push_back({compress(data), data.size()});
    }

    const std::size_t pages = (objects - 2) / 2;
    Writer writer;
    writer.object(catalogValue());
    writer.object(pagesValue(3, 2, pages));
    for (std::size_t page = 0; page < pages; ++page) {
        writer.object("<</Type/Page/Parent 2 0 R/MediaBox[0 0 595.276 841.89]/Rotate 0"
                      "/Resources<</Font<</F1 <</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>"
                      "/ProcSet[/PDF/Text]>>/Contents " +
                      std::to_string(writer.nextId() + 1) + " 0 R>>");
        const Content& content = contents[page % contents.size()];
        writer.stream(content.stored, content.decodedSize);
    }
    return writer.finish(pages);
}

std::string fieldValue(std::size_t index, std::size_t page, std::minstd_rand& random) {
    const std::string left = std::to_string(random() % 500) + "." + std::to_string(random() % 1000);
    return "<< /Type /Annot /Subtype /Widget /FT /Tx /T (line " + std::to_string(index) +
           ".amount) /V (" + std::to_string(random()) + " EUR) /Ff " +
           std::to_string(random() % 8192) + " /F 4 /P " + std::to_string(page) + " 0 R /Rect [" +
           left + " 144.5 " + std::to_string(500 + random() % 90) +
           " 158.25] /DA (/Helv 9 Tf 0 g) /MK << /BC [0.5 0.5 0.75] /R 0 >> >>";
}

Sample formDocument(std::size_t objects) {
    std::minstd_rand random(2);
    Writer writer;
    writer.object(catalogValue());
    writer.object(pagesValue(3, 1, 1));
    writer.object("<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]>>");
    while (writer.nextId() <= objects)
        writer.object(fieldValue(writer.nextId(), 3, random));
    return writer.finish(1);
}

constexpr std::size_t kidsOfEach = 10;
constexpr std::size_t firstField = 3;

// References to those of ten fields, from number `first` on, that the tree of `count` has.
std::string tenFields(std::size_t first, std::size_t count) {
    std::string result;
    for (std::size_t field = first; field < std::min(first + kidsOfEach, count); ++field)
        result += std::to_string(firstField + field) + " 0 R ";
    return result;
}

} // namespace

Sample generateFieldTree(std::size_t fields) {
    Writer writer;
    writer.object("<</Type/Catalog/Pages 2 0 R/AcroForm<</DA(/Helv 0 Tf 0 g)/Fields[" +
                  tenFields(0, fields) + "]>>>>");
    writer.object(pagesValue(0, 0, 0));
    for (std::size_t field = 0; field < fields; ++field) {
        const std::string kids = tenFields((field + 1) * kidsOfEach, fields);
        writer.object("<</FT/Tx/Ff 4096/T(f" + std::to_string(field % kidsOfEach) +
                      ")/V(value)/DA(/Helv 9 Tf 0 g)" +
                      (kids.empty() ? "" : "/Kids[" + kids + "]") + ">>");
    }
    return writer.finish(0);
}

Sample generateFormPages(std::size_t pages) {
    constexpr std::size_t fieldsOfPage = 5, step = fieldsOfPage + 1, firstPage = 3;
    const auto reference = [](std::size_t number) { return std::to_string(number) + " 0 R "; };
    std::string fields;
    for (std::size_t number = firstPage; number < firstPage + pages * step; ++number) {
        if ((number - firstPage) % step != 0) fields += reference(number);
    }
    std::minstd_rand random(3);
    Writer writer;
    writer.object("<</Type/Catalog/Pages 2 0 R/AcroForm<</DA(/Helv 0 Tf 0 g)/Fields[" + fields +
                  "]>>>>");
    writer.object(pagesValue(firstPage, step, pages));
    for (std::size_t page = 0; page < pages; ++page) {
        const std::size_t self = writer.nextId();
        std::string widgets;
        for (std::size_t field = 1; field <= fieldsOfPage; ++field)
            widgets += reference(self + field);
        writer.object("<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Annots[" + widgets + "]>>");
        for (std::size_t field = 1; field <= fieldsOfPage; ++field)
            writer.object(fieldValue(self + field, self, random));
    }
    return writer.finish(pages);
}

bool fillTenFields(Libraries::Files::PDF::Document& document) {
    using namespace Libraries::Files::PDF;
    const auto form = document.form();
    const auto value = String::create(Host::String::create("another value"));
    bool done = form && value;
    for (std::size_t field = 0; done && field < kidsOfEach; ++field) {
        const std::string path = "f" + std::to_string(field) + ".f0";
        const auto found = form->fieldByPath(Host::String::create(path));
        auto* const text = dynamic_cast<Fields::Text*>(found.get());
        done = text != nullptr && text->setValue(value);
    }
    return done;
}

Sample generate(Kind kind, std::size_t objects) {
    return kind == Kind::Text ? textDocument(objects) : formDocument(objects);
}

} // namespace Benchmarks
