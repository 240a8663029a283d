#include "generator/generated_document.h"

#include "generator/encoding.h"

#include <algorithm>

namespace Generator {

GeneratedDocument::GeneratedDocument(Random& random, bool wild)
    : random_(random),
      spelling_(random, wild),
      isDirect_(random.chance(8)),
      shuffled_(random.chance(60)),
      gaps_(random.chance(50) ? 20 : 0) {
    begin();
    for (std::size_t left = random_.chance(50) ? random_.between(1, 3) : 0; left > 0; --left)
        change();
}

/// The next number: in order or not, with gaps or without.
std::uint32_t GeneratedDocument::take() {
    while (numbers_.empty()) {
        for (const std::uint32_t end = next_ + 16; next_ < end; ++next_) {
            if (!random_.chance(gaps_)) numbers_.push_back(next_);
        }
        std::ranges::reverse(numbers_);
        if (shuffled_) random_.shuffle(numbers_);
    }
    const std::uint32_t id = numbers_.back();
    numbers_.pop_back();
    return id;
}

std::string GeneratedDocument::reference(std::uint32_t id) {
    return std::to_string(id) + " " + std::to_string(generations_[id]) + " R";
}

std::string GeneratedDocument::put(std::uint32_t id, std::string value) {
    const std::uint16_t generation = generations_[id];
    revisions_.back().objects[id] = {generation, std::move(value), generation != 0};
    return reference(id);
}

std::string GeneratedDocument::putOutside(std::uint32_t id, std::string value) {
    std::string result = put(id, std::move(value));
    revisions_.back().objects[id].outside = true;
    return result;
}

std::string GeneratedDocument::maybeBehind(std::string value, unsigned percent) {
    return random_.chance(percent) ? put(take(), std::move(value)) : value;
}

/// Whatever a stream's dictionary says of its data stands behind a reference now and then.
std::string GeneratedDocument::stream(Entries entries, const std::string& data) {
    const Encoded encoded = encodedAnyhow(data, random_);
    const auto said = [&](const Tokens& items) {
        if (items.size() == 1 && random_.chance(70)) return items.front();
        Tokens behind = items;
        for (std::string& item : behind)
            item = item == "null" ? item : maybeBehind(item, 10);
        return spelling_.array(behind);
    };
    if (!encoded.filters.empty()) {
        entries.emplace_back("/Filter", maybeBehind(said(encoded.filters), 15));
        if (random_.chance(20))
            entries.emplace_back("/DecodeParms", maybeBehind(said(encoded.parms), 30));
    }
    entries.emplace_back("/Length", maybeBehind(std::to_string(encoded.data.size()), 25));
    random_.shuffle(entries);
    static constexpr std::string_view starts[] = {"stream\n", "stream\r\n", "\nstream\n",
                                                  " stream\r\n"};
    static constexpr std::string_view ends[] = {"\nendstream", "\r\nendstream", "\rendstream",
                                                "endstream"};
    std::string text = spelling_.dictionary(entries);
    text.append(random_.oneOf(starts)).append(encoded.data);
    return text.append(random_.oneOf(ends));
}

void GeneratedDocument::begin() {
    GeneratedRevision& revision = revisions_.emplace_back();
    catalog_ = take();
    info_ = random_.chance(60) ? take() : 0;
    list_ = random_.chance(30) ? take() : 0;
    for (std::size_t left = random_.between(3, 12); left > 0; --left)
        data_.insert(take());
    for (int left = 6; left > 0; --left)
        revision.spare.push_back(take());
    for (const std::uint32_t id : data_) {
        if (random_.chance(60)) name(id);
    }
    references_.push_back(std::to_string(*data_.begin()) + " 7 R");
    references_.emplace_back("99999 0 R");
    references_.emplace_back("0 0 R");
    references_.push_back(std::to_string(revision.spare.front()) + " 0 R");
    for (const std::uint32_t id : data_)
        putData(id);
    if (info_ != 0)
        put(info_,
            spelling_.dictionary({{"/Title", spelling_.string()}, {"/X", spelling_.value(1, {})}}));
    tree_ = putNode("", random_.chance(40) ? 3 : 1);
    putCatalog();
}

/// A later revision: some objects change, some go, some numbers are taken again.
void GeneratedDocument::change() {
    GeneratedRevision& revision = revisions_.emplace_back();
    for (int left = 6; left > 0; --left)
        revision.spare.push_back(take());
    for (const std::uint32_t id : std::set<std::uint32_t>(free_)) {
        // A reference of the former generation leads nowhere, but libqpdf finds the former object.
        if (named_.contains(id) || random_.chance(50)) continue;
        free_.erase(id);
        data_.insert(id);
        putData(id);
    }
    for (const std::uint32_t id : std::set<std::uint32_t>(data_)) {
        if (random_.chance(30)) {
            putData(id);
        } else if (random_.chance(15) && !revision.objects.contains(id)) {
            data_.erase(id);
            free_.insert(id);
            revision.freed[id] = ++generations_[id];
        }
    }
    if (random_.chance(50)) {
        const std::uint32_t added = take();
        data_.insert(added);
        if (random_.chance(60)) name(added);
        putData(added);
    }
    if (random_.chance(50)) putOutside(random_.oneOf(drawings_), stream({}, contents()));
    putCatalog();
}

/// Lets all values refer to it, not the catalog alone, which changes in every revision.
void GeneratedDocument::name(std::uint32_t id) {
    named_.insert(id);
    references_.push_back(reference(id));
}

void GeneratedDocument::putCatalog() {
    Entries entries = {{"/Type", "/Catalog"}, {"/Pages", tree_}};
    static constexpr std::string_view versions[] = {"/1.2", "/1.5", "/1.7", "/2.0"};
    if (random_.chance(20)) entries.emplace_back("/Version", random_.oneOf(versions));
    Tokens all = references_;
    for (const std::uint32_t id : data_)
        all.push_back(reference(id));
    random_.shuffle(all);
    const std::string list = spelling_.array(all);
    entries.emplace_back("/Data", list_ == 0 ? list : put(list_, list));
    entries.emplace_back("/More", spelling_.value(3, references_));
    if (random_.chance(10)) entries.emplace_back("/Deep", deepArray());
    random_.shuffle(entries);
    GeneratedRevision& revision = revisions_.back();
    const std::string catalog = spelling_.dictionary(entries);
    revision.root = isDirect_ ? catalog : put(catalog_, catalog);
    revision.info = info_ == 0 ? "" : reference(info_);
}

std::string GeneratedDocument::putNode(const std::string& parent, unsigned depth) {
    const std::uint32_t id = take();
    const bool isDirectRoot = isDirect_ && parent.empty() && random_.chance(50);
    const std::string self = isDirectRoot ? "null" : reference(id);
    const std::size_t before = pages_;
    Tokens kids;
    for (std::size_t left = random_.between(1, 3); left > 0; --left)
        kids.push_back(depth > 1 && random_.chance(50) ? putNode(self, depth - 1) : putPage(self));
    Entries entries = {{"/Type", maybeBehind("/Pages", 5)},
                       {"/Kids", maybeBehind(spelling_.array(kids), 20)},
                       {"/Count", maybeBehind(std::to_string(pages_ - before), 10)}};
    if (!parent.empty()) entries.emplace_back("/Parent", parent);
    if (parent.empty() || random_.chance(30)) {
        entries.emplace_back("/MediaBox", maybeBehind("[0 0 200 150]", 20));
        entries.emplace_back("/Resources", maybeBehind(resources(), 50));
    }
    if (random_.chance(20)) entries.emplace_back("/Rotate", random_.chance(50) ? "90" : "0");
    random_.shuffle(entries);
    const std::string node = spelling_.dictionary(entries);
    return isDirectRoot ? node : put(id, node);
}

std::string GeneratedDocument::putPage(const std::string& parent) {
    ++pages_;
    const std::uint32_t id = take();
    Tokens parts;
    for (std::size_t left = random_.between(1, 2); left > 0; --left) {
        drawings_.push_back(take());
        parts.push_back(putOutside(drawings_.back(), stream({}, contents())));
    }
    const std::string drawn = parts.size() == 1 && random_.chance(70)
                                  ? parts.front()
                                  : maybeBehind(spelling_.array(parts), 20);
    Entries entries = {{"/Type", "/Page"}, {"/Parent", parent}, {"/Contents", drawn}};
    if (random_.chance(30))
        entries.emplace_back("/MediaBox", spelling_.array({"0", "0", "120.0", "+100"}));
    if (random_.chance(30)) entries.emplace_back("/Resources", maybeBehind(resources(), 50));
    if (random_.chance(20))
        entries.emplace_back("/Private#20Data", spelling_.value(2, references_));
    random_.shuffle(entries);
    const std::string page = spelling_.dictionary(entries);
    return isDirect_ && random_.chance(50) ? page : put(id, page);
}

/// Balanced, so that it draws the same wherever it stands in an array.
std::string GeneratedDocument::contents() {
    std::string text = "q\n";
    for (std::size_t left = random_.between(1, 4); left > 0; --left) {
        const auto at = [&](std::size_t limit) {
            return std::to_string(random_.below(limit)) + " ";
        };
        switch (random_.below(3)) {
        case 0:
            text += "0." + at(9) + "0." + at(9) + "0 rg " + at(90) + at(90) + at(40) + at(40) +
                    "re f\n";
            break;
        case 1:
            text += at(5) + "w " + at(120) + at(90) + "m " + at(120) + at(90) + "l S\n";
            break;
        default:
            text += "BT /F1 " + std::to_string(random_.between(8, 20)) + " Tf " + at(60) + at(90) +
                    "Td (Text " + at(99) + ") Tj ET\n";
        }
    }
    if (random_.chance(30)) text += "30 0 0 20 5 5 cm /Im1 Do\n";
    return text + "Q\n";
}

std::string GeneratedDocument::resources() {
    const std::string font = spelling_.dictionary(
        {{"/Type", "/Font"}, {"/Subtype", "/Type1"}, {"/BaseFont", "/Helvetica"}});
    return spelling_.dictionary(
        {{"/Font", spelling_.dictionary({{"/F1", maybeBehind(font, 80)}})},
         {"/XObject", maybeBehind(spelling_.dictionary({{"/Im1", image()}}), 20)}});
}

std::string GeneratedDocument::image() {
    std::string pixels;
    while (pixels.size() < 16)
        pixels += static_cast<char>(random_.below(256));
    return putOutside(take(), stream({{"/Type", "/XObject"},
                                      {"/Subtype", "/Image"},
                                      {"/Width", "4"},
                                      {"/Height", "4"},
                                      {"/ColorSpace", "/DeviceGray"},
                                      {"/BitsPerComponent", maybeBehind("8", 10)}},
                                     pixels));
}

void GeneratedDocument::putData(std::uint32_t id) {
    if (random_.chance(20)) {
        putOutside(id, stream({{"/Kept", spelling_.value(2, references_)}}, spelling_.string()));
    } else {
        put(id, random_.chance(30) ? spelling_.value(0, {}) : spelling_.container(3, references_));
    }
}

std::string GeneratedDocument::deepArray() {
    const std::size_t depth = random_.between(20, 300);
    std::string text;
    for (std::size_t level = 0; level < depth; ++level)
        text += "[";
    text += spelling_.value(0, references_);
    return text + std::string(depth, ']');
}

} // namespace Generator
