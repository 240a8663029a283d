#pragma once

#include "packed/packed_store.h"
#include "packed/packed_value.h"
#include "state/object_obj.h"

#include <pdf/values.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

/// The indirect objects of a document, in ascending order of their numbers. That is the order of
/// loading and appending. Each number occurs once.
///
/// A loaded object is a packed spelling until somebody asks for the object itself.
class ObjectTable {
public:
    /// Tells of an object without making it. A slot is as small as possible, since there is one for
    /// each object of a file.
    class Slot {
    public:
        Slot(std::uint32_t id, std::uint16_t generation, const PackedValue& packed) noexcept
            : bytes_(packed.bytes),
              streamOffset_(packed.streamOffset),
              id_(id),
              generation_(generation),
              kind_(static_cast<std::uint8_t>(packed.kind)),
              spelled_(packed.spelled),
              unwritable_(packed.unwritable) {}
        explicit Slot(Ref<ObjectObj> object) noexcept
            : object_(std::move(object)), id_(object_->id()), generation_(object_->generation()) {}

        [[nodiscard]] std::uint32_t id() const noexcept { return id_; }
        [[nodiscard]] std::uint16_t generation() const noexcept { return generation_; }
        /// Whether the object's value was unpacked or never was packed: the value counts then.
        [[nodiscard]] bool touched() const noexcept { return object_ && object_->touched(); }
        /// Whether `object` is the one of this slot.
        [[nodiscard]] bool is(const Object& object) const noexcept {
            return object_.get() == &object;
        }
        /// The value of a touched object; null for any other, and for one without a value.
        [[nodiscard]] Ref<Value> touchedValue() const noexcept {
            return touched() ? object_->value() : nullptr;
        }
        /// Whether the packed spelling tells that the value is of another kind.
        [[nodiscard]] bool holdsOther(Value::Type kind) const noexcept {
            return !touched() && kind_ != static_cast<std::uint8_t>(kind);
        }
        /// The packed value of an untouched object. The table owns the bytes.
        [[nodiscard]] PackedValue packed() const noexcept {
            return {bytes_, static_cast<Value::Type>(kind_), spelled_, unwritable_, streamOffset_};
        }

    private:
        friend class ObjectTable;

        std::string_view bytes_;
        std::uint64_t streamOffset_ = Stream::noOffset;
        mutable Ref<ObjectObj> object_;
        std::uint32_t id_;
        std::uint16_t generation_;
        std::uint8_t kind_ = 0;
        bool spelled_ : 1 = false;
        bool unwritable_ : 1 = false;
    };

    /// Appends an object. Its packed bytes lie in the table's store. Ids ascend. Throws
    /// `std::bad_alloc`, as do the operations that follow.
    void append(std::uint32_t id, std::uint16_t generation, const PackedValue& packed);
    void append(std::uint32_t id, std::uint16_t generation, Ref<Value> value);
    /// Takes the home of the object's value away.
    void release(const Slot& slot) const noexcept {
        if (store_) unsettle(slot.touchedValue(), store_->home());
    }
    /// Puts another object in the place of one, under its number.
    void replace(const Slot& slot, const PackedValue& packed) noexcept;
    void reserve(std::size_t size) { slots_.reserve(size); }
    [[nodiscard]] const Ref<ObjectObj>& object(const Slot& slot) const;
    /// The object's value; null if it has none. This touches the object.
    [[nodiscard]] Ref<Value> value(const Slot& slot) const;

    /// Erases every object that `unwanted` accepts. It asks about each slot once, in order, and
    /// keeps the order of the rest.
    template <class Unwanted>
    void removeIf(Unwanted unwanted) noexcept {
        std::erase_if(slots_, unwanted);
    }
    /// Cuts the table off behind its first `size` objects.
    void truncate(std::size_t size) noexcept;

    /// The slot of an object, valid until the table changes; null if there is none.
    [[nodiscard]] const Slot* find(std::uint32_t id, std::uint16_t generation) const noexcept;

    [[nodiscard]] std::size_t size() const noexcept { return slots_.size(); }
    [[nodiscard]] const std::vector<Slot>& slots() const noexcept { return slots_; }
    [[nodiscard]] const Ref<PackedStore>& store() const;
    /// Whether the values of this table's objects have this home.
    [[nodiscard]] bool has(HomeNumber home) const noexcept {
        return store_ && store_->home() == home;
    }

private:
    std::vector<Slot> slots_;
    mutable Ref<PackedStore> store_;
};

} // namespace Libraries::Files::PDF
