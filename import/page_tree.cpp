#include "page_tree.h"

#include "report.h"

#include <pdf/errors.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace Libraries::Files::PDF::Import {

namespace {

/// How many kids nodes may take from arrays that another node has had already. No sound document
/// has such: a page has one parent.
constexpr int mostShared = 1 << 16;

/// A node of the tree that has kids.
struct Node {
    QPDFObjectHandle dict;
    std::size_t parent;
    long long pages = 0;
};

class Tree {
public:
    explicit Tree(QPDF& document) : document_(document) {}

    void mend();

private:
    [[nodiscard]] QPDFObjectHandle asObject(QPDFObjectHandle& dict, const char* key);
    void addRoot();
    void add(QPDFObjectHandle& dict, std::size_t parent);
    void countShared(QPDFObjectHandle& kids);
    void walkKids(std::size_t index);
    [[nodiscard]] bool isKid(QPDFObjectHandle& kid);
    void setType(QPDFObjectHandle& dict, const char* type);
    void count();

    QPDF& document_;
    std::vector<Node> nodes_;     // each behind its parent
    std::set<QPDFObjGen> seen_;   // the catalog, and what has kids
    std::set<QPDFObjGen> arrays_; // of kids
    int shared_ = 0;
    std::size_t lost_ = 0;
};

bool hasKids(QPDFObjectHandle node) {
    return node.isDictionary() && node.getKey("/Kids").isArray();
}

void Tree::mend() {
    addRoot();
    for (std::size_t index = 0; index < nodes_.size(); ++index)
        walkKids(index);
    if (lost_ == 0) return;
    count();
    warn("the page tree has lost " + std::to_string(lost_) + " of its kids");
}

/// The entry, which becomes an object where it is none.
QPDFObjectHandle Tree::asObject(QPDFObjectHandle& dict, const char* key) {
    QPDFObjectHandle entry = dict.getKey(key);
    if (entry.isIndirect()) return entry;
    entry = document_.makeIndirectObject(entry);
    dict.replaceKey(key, entry);
    return entry;
}

void Tree::addRoot() {
    QPDFObjectHandle trailer = document_.getTrailer();
    if (!trailer.getKey("/Root").isDictionary()) fail(BeyondRepair, "the document has no catalog");
    QPDFObjectHandle catalog = asObject(trailer, "/Root");
    if (!hasKids(catalog.getKey("/Pages"))) fail(BeyondRepair, "the document has no page tree");
    QPDFObjectHandle root = asObject(catalog, "/Pages");
    setType(catalog, "/Catalog");
    seen_.insert(catalog.getObjGen());
    add(root, 0);
}

void Tree::add(QPDFObjectHandle& dict, std::size_t parent) {
    seen_.insert(dict.getObjGen());
    setType(dict, "/Pages");
    nodes_.push_back({dict, parent});
}

/// What can be walked on from, or be a page. No node is met twice: rings end there.
bool Tree::isKid(QPDFObjectHandle& kid) {
    if (!kid.isDictionary() || seen_.contains(kid.getObjGen())) return false;
    return hasKids(kid) || !kid.getKey("/Type").isNameAndEquals("/Pages");
}

void Tree::countShared(QPDFObjectHandle& kids) {
    if (!kids.isIndirect() || arrays_.insert(kids.getObjGen()).second) return;
    const int count = kids.getArrayNItems();
    if (count > mostShared - shared_) fail(BeyondRepair, "too many pages have several parents");
    shared_ += count;
}

void Tree::walkKids(std::size_t index) {
    QPDFObjectHandle former = nodes_[index].dict.getKey("/Kids");
    countShared(former);
    bool changed = former.isIndirect();
    std::vector<QPDFObjectHandle> kids;
    for (int place = 0; place < former.getArrayNItems(); ++place) {
        QPDFObjectHandle kid = former.getArrayItem(place);
        if (!isKid(kid)) {
            ++lost_;
            changed = true;
            continue;
        }
        changed = changed || !kid.isIndirect();
        if (!kid.isIndirect()) kid = document_.makeIndirectObject(kid);
        kids.push_back(kid);
        if (hasKids(kid)) {
            add(kid, index);
        } else {
            setType(kid, "/Page");
            ++nodes_[index].pages;
        }
    }
    if (changed) nodes_[index].dict.replaceKey("/Kids", QPDFObjectHandle::newArray(kids));
}

void Tree::setType(QPDFObjectHandle& dict, const char* type) {
    QPDFObjectHandle former = dict.getKey("/Type");
    const bool isRight = former.isNameAndEquals(type);
    if (isRight && !former.isIndirect()) return;
    dict.replaceKey("/Type", QPDFObjectHandle::newName(type));
    if (!isRight) warn(std::string("a part of the page tree had another type than ") + type);
}

void Tree::count() {
    for (std::size_t index = nodes_.size(); index-- > 0;) {
        Node& node = nodes_[index];
        node.dict.replaceKey("/Count", QPDFObjectHandle::newInteger(node.pages));
        if (index != 0) nodes_[node.parent].pages += node.pages;
    }
}

} // namespace

void mendPageTree(QPDF& document) {
    Tree(document).mend();
}

} // namespace Libraries::Files::PDF::Import
