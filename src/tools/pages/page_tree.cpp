#include "tools/pages/page_tree.h"

#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// A node whose kids are being walked.
struct Level {
    Ref<Object> node;
    Ref<Array> kids;
    Attributes inherited;
    std::uint64_t next = 0;
};

/// How often the kids of all nodes may be visited for each one that is listed, and beyond that:
/// nodes may share an array of them.
constexpr std::uint64_t mostVisits = 4;
constexpr std::uint64_t alwaysVisited = 4096;

/// Walks a tree without recursion: no depth is too deep.
class TreeReader {
public:
    explicit TreeReader(const Document& document) noexcept : document_(document) {}

    [[nodiscard]] PageTree run() &&;

private:
    void enter(const Ref<Object>& node, const Ref<Dictionary>& entries, Attributes attributes);
    void visit(Level level, std::uint64_t index);
    [[nodiscard]] bool isNode(const Ref<Object>& kid, const Ref<Dictionary>& entries) const;
    void add(const Ref<Object>& object, const Ref<Dictionary>& entries, Attributes attributes);
    [[nodiscard]] Attributes below(const Ref<Dictionary>& entries, Attributes attributes) const;

    const Document& document_;
    PageTree tree_;
    std::vector<Level> levels_;
    std::unordered_set<std::uint32_t> nodes_;
    std::unordered_map<const Array*, Ref<Array>> arrays_; ///< kept, so that a place is no other's
    std::uint64_t visitsLeft_ = alwaysVisited;
};

PageTree TreeReader::run() && {
    tree_.root = orFail(document_.getPageCatalog());
    tree_.rootEntries = orFail(tree_.root->valueAsDictionary());
    enter(tree_.root, tree_.rootEntries, below(tree_.rootEntries, {}));
    while (!levels_.empty()) {
        Level& level = levels_.back();
        if (level.next == level.kids->size()) {
            levels_.pop_back();
        } else {
            const std::uint64_t index = level.next++;
            visit(level, index);
        }
    }
    return std::move(tree_);
}

Attributes TreeReader::below(const Ref<Dictionary>& entries, Attributes attributes) const {
    for (std::size_t index = 0; index < inheritable.size(); ++index) {
        Ref<Value> own = entryOf(document_, entries, inheritable[index]);
        attributes.own[index] = own != nullptr;
        if (own) attributes.values[index] = std::move(own);
    }
    return attributes;
}

void TreeReader::enter(const Ref<Object>& node, const Ref<Dictionary>& entries,
                       Attributes attributes) {
    if (!nodes_.insert(node->id()).second) {
        fail(PageTreeInvalid, "Node of the page tree is listed twice: ", node);
    }
    Ref<Array> kids = followEntry<Array>(document_, entries, "Kids");
    if (!kids) fail(PageTreeInvalid, "Node of the page tree has no valid Kids entry: ", node);
    if (arrays_.emplace(kids.get(), kids).second) visitsLeft_ += mostVisits * kids->size();
    levels_.push_back({node, std::move(kids), std::move(attributes), 0});
}

// Takes the level by value: the vector that it is in may grow.
void TreeReader::visit(Level level, std::uint64_t index) {
    if (visitsLeft_-- == 0) {
        fail(OutOfRange, "Nodes of the page tree share too many kids: ", level.node);
    }
    const Ref<ObjectRef> ref = Host::cast<ObjectRef>(level.kids->get(index));
    if (!ref) fail(PageTreeInvalid, "Kid ", index, " is no reference in node ", level.node);
    const Ref<Object> kid = quietly([&] { return document_.getObject(ref); });
    if (!kid) fail(PageTreeInvalid, "Kid ", index, " leads nowhere in node ", level.node);
    const Ref<Dictionary> entries = Host::cast<Dictionary>(quietly([&] { return kid->value(); }));
    if (!entries) fail(PageTreeInvalid, "Node of the page tree is no dictionary: ", kid);

    Attributes attributes = below(entries, std::move(level.inherited));
    isNode(kid, entries) ? enter(kid, entries, std::move(attributes))
                         : add(kid, entries, std::move(attributes));
}

/// Whether there are pages below it; else it is a page itself.
bool TreeReader::isNode(const Ref<Object>& kid, const Ref<Dictionary>& entries) const {
    const Ref<Value> type = followEntry(document_, entries, "Type");
    if (!type) return entryOf(document_, entries, "Kids") != nullptr;
    if (isName(type, "Pages")) return true;
    if (isName(type, "Page")) return false;
    fail(PageTreeInvalid, "Type of a node of the page tree is neither Page nor Pages: ", kid);
}

void TreeReader::add(const Ref<Object>& object, const Ref<Dictionary>& entries,
                     Attributes attributes) {
    const auto& [resources, mediaBox, cropBox, rotate] = attributes.values;
    Page page;
    page.object = object;
    page.dictionary = entries;
    page.resources = followTo<Dictionary>(document_, resources);
    page.mediaBox = directBox(document_, mediaBox);
    page.cropBox = directBox(document_, cropBox);
    page.rotate = directNumber(document_, rotate);
    page.depth = levels_.size();
    const bool valid[] = {!resources == !page.resources, !mediaBox == !page.mediaBox,
                          !cropBox == !page.cropBox, !rotate == !page.rotate};
    for (std::size_t index = 0; index < inheritable.size(); ++index) {
        if (!valid[index])
            fail(PageInvalid, inheritable[index], " is of a wrong kind for page ", object);
    }
    tree_.pages.push_back({std::move(page), std::move(attributes)});
}

} // namespace

PageTree readPageTree(const Document& document) {
    return TreeReader(document).run();
}

Ref<Number> directNumber(const Document& document, const Ref<Value>& value) {
    Ref<Number> number = followTo<Number>(document, value);
    if (!number || number == value) return number;
    // The number of an object may be some stream's Length, which changes.
    return orThrow(Number::create(number->integer(), number->fraction()));
}

Ref<Array> directBox(const Document& document, const Ref<Value>& value) {
    constexpr std::uint64_t sides = 4;
    const Ref<Array> box = followTo<Array>(document, value);
    if (!box || box->size() != sides) return nullptr;
    std::vector<Ref<Value>> numbers;
    for (std::uint64_t side = 0; side < sides; ++side) {
        numbers.emplace_back(directNumber(document, box->get(side)));
        if (!numbers.back()) return nullptr;
    }
    return newArray(numbers);
}

void failWithoutPage(std::uint64_t index, std::uint64_t pages) {
    fail(OutOfRange, "There is no page ", index, ": there are ", pages, ", counted from 0");
}

std::vector<Page> pagesOf(const Document& document) {
    PageTree tree = readPageTree(document);
    std::vector<Page> pages;
    pages.reserve(tree.pages.size());
    for (FoundPage& found : tree.pages)
        pages.push_back(std::move(found.page));
    return pages;
}

} // namespace Libraries::Files::PDF::Tools
