#include "tools/pages/page_tree.h"

#include "tools/failure.h"
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
    TreeReader(const Document& document, PageTree& tree) noexcept
        : document_(document), tree_(tree) {}

    bool run();

private:
    bool enter(const Ref<Object>& node, const Ref<Dictionary>& entries, Attributes attributes);
    bool visit(Level level, std::uint64_t index);
    bool add(const Ref<Object>& object, const Ref<Dictionary>& entries, Attributes attributes);
    [[nodiscard]] Attributes below(const Dictionary& entries, Attributes attributes) const;

    const Document& document_;
    PageTree& tree_;
    std::vector<Level> levels_;
    std::unordered_set<std::uint32_t> nodes_;
    std::unordered_map<const Array*, Ref<Array>> arrays_; ///< kept, so that a place is no other's
    std::uint64_t visitsLeft_ = alwaysVisited;
};

bool TreeReader::run() {
    tree_.root = document_.getPageCatalog();
    if (!tree_.root) return false;
    tree_.rootEntries = tree_.root->valueAsDictionary();
    if (!tree_.rootEntries) return false;
    if (!enter(tree_.root, tree_.rootEntries, below(*tree_.rootEntries, {}))) return false;
    while (!levels_.empty()) {
        Level& level = levels_.back();
        if (level.next == level.kids->size()) {
            levels_.pop_back();
        } else if (const std::uint64_t index = level.next++; !visit(level, index)) {
            return false;
        }
    }
    return true;
}

Attributes TreeReader::below(const Dictionary& entries, Attributes attributes) const {
    for (std::size_t index = 0; index < inheritable.size(); ++index) {
        Ref<Value> own = entryOf(document_, entries, inheritable[index]);
        attributes.own[index] = own != nullptr;
        if (own) attributes.values[index] = std::move(own);
    }
    return attributes;
}

bool TreeReader::enter(const Ref<Object>& node, const Ref<Dictionary>& entries,
                       Attributes attributes) {
    if (!nodes_.insert(node->id()).second) {
        return fail(PageTreeInvalid, "Node of the page tree is listed twice: ", node);
    }
    Ref<Array> kids = Host::cast<Array>(followEntry(document_, *entries, "Kids"));
    if (!kids) {
        return fail(PageTreeInvalid, "Node of the page tree has no valid Kids entry: ", node);
    }
    if (arrays_.emplace(kids.get(), kids).second) visitsLeft_ += mostVisits * kids->size();
    levels_.push_back({node, std::move(kids), std::move(attributes), 0});
    return true;
}

// Takes the level by value: the vector that it is in may grow.
bool TreeReader::visit(Level level, std::uint64_t index) {
    if (visitsLeft_-- == 0) {
        return fail(OutOfRange, "Nodes of the page tree share too many kids: ", level.node);
    }
    const Ref<ObjectRef> ref = Host::cast<ObjectRef>(level.kids->get(index));
    if (!ref) {
        return fail(PageTreeInvalid, "Kid ", index, " is no reference in node ", level.node);
    }
    const Ref<Object> kid = quietly([&] { return document_.getObject(ref); });
    if (!kid) return fail(PageTreeInvalid, "Kid ", index, " leads nowhere in node ", level.node);
    const Ref<Dictionary> entries = Host::cast<Dictionary>(quietly([&] { return kid->value(); }));
    if (!entries) return fail(PageTreeInvalid, "Node of the page tree is no dictionary: ", kid);

    const Ref<Value> type = followEntry(document_, *entries, "Type");
    const bool isNode =
        type ? isName(type, "Pages") : entryOf(document_, *entries, "Kids") != nullptr;
    if (type && !isNode && !isName(type, "Page")) {
        return fail(PageTreeInvalid,
                    "Type of a node of the page tree is neither Page nor Pages: ", kid);
    }
    Attributes attributes = below(*entries, std::move(level.inherited));
    return isNode ? enter(kid, entries, std::move(attributes))
                  : add(kid, entries, std::move(attributes));
}

bool TreeReader::add(const Ref<Object>& object, const Ref<Dictionary>& entries,
                     Attributes attributes) {
    const auto& [resources, mediaBox, cropBox, rotate] = attributes.values;
    Page page;
    page.object = object;
    page.dictionary = entries;
    page.resources = Host::cast<Dictionary>(follow(document_, resources));
    page.mediaBox = directBox(document_, mediaBox);
    page.cropBox = directBox(document_, cropBox);
    page.rotate = directNumber(document_, rotate);
    page.depth = levels_.size();
    const bool valid[] = {!resources == !page.resources, !mediaBox == !page.mediaBox,
                          !cropBox == !page.cropBox, !rotate == !page.rotate};
    for (std::size_t index = 0; index < inheritable.size(); ++index) {
        if (!valid[index]) {
            return fail(PageInvalid, inheritable[index], " is of a wrong kind for page ", object);
        }
    }
    tree_.pages.push_back({std::move(page), std::move(attributes)});
    return true;
}

} // namespace

bool readPageTree(const Document& document, PageTree& tree) {
    return TreeReader(document, tree).run();
}

Ref<Number> directNumber(const Document& document, const Ref<Value>& value) {
    Ref<Number> number = Host::cast<Number>(follow(document, value));
    if (!number || number == value) return number;
    // The number of an object may be some stream's Length, which changes.
    return orThrow(Number::create(number->integer(), number->fraction()));
}

Ref<Array> directBox(const Document& document, const Ref<Value>& value) {
    constexpr std::uint64_t sides = 4;
    const Ref<Array> box = Host::cast<Array>(follow(document, value));
    if (!box || box->size() != sides) return nullptr;
    std::vector<Ref<Value>> numbers;
    for (std::uint64_t side = 0; side < sides; ++side) {
        numbers.emplace_back(directNumber(document, box->get(side)));
        if (!numbers.back()) return nullptr;
    }
    return orThrow(Array::create(numbers));
}

Ref<Host::TVector<Page>> allPages(const Document& document) noexcept {
    return guarded([&]() -> Ref<Host::TVector<Page>> {
        PageTree tree;
        if (!readPageTree(document, tree)) return nullptr;
        std::vector<Page> pages;
        pages.reserve(tree.pages.size());
        for (FoundPage& found : tree.pages)
            pages.push_back(std::move(found.page));
        return orThrow(Host::make<Host::TVector<Page>>(std::move(pages)));
    });
}

} // namespace Libraries::Files::PDF::Tools
