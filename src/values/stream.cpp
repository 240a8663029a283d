#include "host/guard.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/scalars.h"

#include <pdf/values.h>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

StreamObj::StreamObj(Ref<Dictionary> dict, std::uint64_t offset) noexcept
    : dict_(std::move(dict)), offset_(offset) {}

StreamObj::StreamObj(Ref<Dictionary> dict, Ref<Interfaces::Stripe> data) noexcept
    : dict_(std::move(dict)), data_(std::move(data)), offset_(noOffset) {}

void StreamObj::strmData(Ref<Interfaces::Stripe> data) noexcept {
    data_ = std::move(data);
    changed_ = true;
}

Ref<Host::String> StreamObj::asText() const noexcept {
    return Host::guarded([&]() -> Ref<Host::String> {
        const Ref<Host::String> dictText = dict_ ? dict_->asText() : "null"_str;
        if (!dictText) return nullptr;
        Host::StringBuilder text;
        text.append("@");
        if (offset_ == noOffset) {
            text.append("-1");
        } else {
            text.appendNumber(offset_);
        }
        text.append(" ");
        text.append(*dictText);
        return text.build();
    });
}

// Streams never equal: two with equal dictionaries may still hold different data.
bool StreamObj::equal(Ref<Value>) const noexcept {
    return false;
}

Compression StreamObj::compression() const noexcept {
    if (!dict_) return Compression::Unknown;
    const std::uint32_t code = Host::Error::get();
    const Ref<Value> filter = dict_->find("Filter"_str);
    Host::Error::set(code);
    if (!filter) return Compression::None;
    const Name* name = as<Name>(filter);
    if (name == nullptr) return Compression::Unknown;
    const Ref<Host::String> text = name->name();
    return text && text->equals("FlateDecode") ? Compression::FlateDecode : Compression::None;
}

} // namespace Libraries::Files::PDF
