#include "forms/field_tree.h"

#include "forms/failure.h"
#include "forms/field_kinds.h"

#include <new>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

/// A new field, and the part of it that all kinds have.
struct MadeField {
    Ref<Field> field;
    FieldData* data = nullptr;
};

template <class Implementation>
MadeField makeField(FieldPlace place) {
    auto field = makeOrThrow<Implementation>(std::move(place));
    FieldData* data = field.get();
    return {std::move(field), data};
}

/// Makes no field for an unknown kind.
MadeField makeOfKind(const Ref<Name>& type, FieldPlace place) {
    if (!type) return makeField<PlainFieldObj>(std::move(place));
    const Ref<Host::String> name = type->name();
    if (!name) return {};
    if (name->equals("Btn")) return makeField<ButtonObj>(std::move(place));
    if (name->equals("Tx")) return makeField<TextObj>(std::move(place));
    if (name->equals("Ch")) return makeField<ChoiceObj>(std::move(place));
    if (name->equals("Sig")) return makeField<SignatureObj>(std::move(place));
    return {};
}

Ref<Array> readKids(const MadeField& made) noexcept {
    made.field->lockRef();
    Ref<Array> kids = made.data->dict->findAsArray("Kids"_str, true);
    made.field->unlockRef();
    return kids;
}

/// Walks the tree with a stack of its own, since trees may be deeper than the thread's stack
/// allows.
class TreeBuilder {
public:
    TreeBuilder(Document& document, std::uint64_t limit)
        : document_(document), weakDocument_(&document), left_(limit) {}

    bool build(const Ref<Array>& array, Kids& fields);

private:
    /// An array whose fields are being built.
    struct Level {
        Ref<Array> array;
        std::uint64_t next = 0;
        /// The list that takes its fields.
        Kids* fields;
        /// The field whose kids these are; null at the top.
        Ref<Field> owner;
        Host::WeakRef<Field> weakOwner;
    };

    bool step();
    [[nodiscard]] bool makeNext(Level& level, MadeField& made);
    [[nodiscard]] Ref<Dictionary> resolve(const Ref<ObjectRef>& ref, std::uint64_t index) const;
    void descend(MadeField made, Ref<Array> kids);

    Document& document_;
    Host::WeakRef<Document> weakDocument_;
    /// The number of fields that may still be made.
    std::uint64_t left_;
    std::vector<Level> levels_;
};

bool TreeBuilder::build(const Ref<Array>& array, Kids& fields) {
    levels_.push_back({array, 0, &fields, nullptr, {}});
    while (!levels_.empty()) {
        if (step()) continue;
        for (std::size_t level = levels_.size(); level > 1; --level)
            refuseField("Failed to initialize child field");
        return false;
    }
    return true;
}

/// Builds one field, or puts one whose kids are complete in its place.
bool TreeBuilder::step() {
    Level& level = levels_.back();
    if (level.next == level.array->size()) {
        const Ref<Field> complete = std::move(level.owner);
        levels_.pop_back();
        if (complete) levels_.back().fields->add(complete);
        return true;
    }
    MadeField made;
    if (!makeNext(level, made)) return false;
    if (Ref<Array> kids = readKids(made)) {
        descend(std::move(made), std::move(kids));
    } else {
        level.fields->add(std::move(made.field));
    }
    return true;
}

bool TreeBuilder::makeNext(Level& level, MadeField& made) {
    const std::uint64_t index = level.next++;
    const Ref<ObjectRef> ref = level.array->getAsObjectRef(index);
    if (!ref) return refuseField("Child field is not an object reference: ", index);
    Ref<Dictionary> dict = resolve(ref, index);
    if (!dict) return false;
    if (left_ == 0) return refuseField("Failed to initialize child field");

    const Ref<Name> type = dict->findAsName("FT"_str);
    made = makeOfKind(type, {{weakDocument_}, {level.weakOwner}, index, std::move(dict)});
    if (!made.field) {
        return refuseField("Resolved child ", index, " ( -> ", ref,
                           " ) has unsupported field type: ", type);
    }
    --left_;
    return true;
}

Ref<Dictionary> TreeBuilder::resolve(const Ref<ObjectRef>& ref, std::uint64_t index) const {
    const Ref<PDF::Object> object = document_.getObject(ref);
    if (!object) throwIfExhausted();
    if (!object) return refuseField("Failed to resolve child ", index);
    Ref<Dictionary> dict = object->valueAsDictionary();
    if (!dict) {
        throwIfExhausted();
        const Ref<Value> value = object->value();
        const Value::Type found = value ? value->type() : Value::Type::Invalid;
        return refuseField("Resolved child ", index, " ( -> ", ref, " ) is not an object: ", found);
    }
    return dict;
}

void TreeBuilder::descend(MadeField field, Ref<Array> kids) {
    if (!field.field->gcProxy()) throw std::bad_alloc();
    Host::WeakRef<Field> weak(field.field.get());
    levels_.push_back(
        {std::move(kids), 0, &field.data->kids, std::move(field.field), std::move(weak)});
}

} // namespace

bool buildFields(Document& document, const Ref<Array>& array, std::uint64_t limit, Kids& fields) {
    return TreeBuilder(document, limit).build(array, fields);
}

} // namespace Libraries::Files::PDF
