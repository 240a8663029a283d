#include "decoder.h"

#include "pipelines.h"

#include <algorithm>

namespace Libraries::Files::PDF::Import {

namespace {

/// No image is wider; libqpdf keeps two rows of whatever width is said.
constexpr std::uint64_t longestRow = std::uint64_t{1} << 20;

/// Sends what a stream holds on: as it is stored, or through its one filter. What is wrong with
/// what is stored is told where that is read for good.
bool send(QPDFObjectHandle stream, bool stored, Pipeline* next) {
    const auto level = stored ? qpdf_dl_none : qpdf_dl_specialized;
    return stream.pipeStreamData(next, nullptr, 0, level, stored);
}

} // namespace

Decoder::Decoder() : scratch_(QPDF::create()) {
    scratch_->emptyPDF();
    scratch_->setSuppressWarnings(true);
}

/// One call of `decode`: how far it is.
struct Decoder::Run {
    /// Counts what a stage gives on its way.
    bool pass(const QPDFObjectHandle& from, bool stored, Pipeline* next) {
        Meter meter(left, next);
        const bool whole = send(from, stored, &meter);
        result.exceeded = result.exceeded || meter.exceeded();
        result.given = meter.passed();
        return whole;
    }

    std::uint64_t& left;
    QPDFObjectHandle last; // what the next stage decodes
    Decoded result = {};
};

/// Each stage is a stream with one filter, whose stored data is what the stage before it gives.
/// False where the filter is none that libqpdf decodes, or takes too much.
bool Decoder::add(const Filter& filter, std::size_t index, Run& run) {
    const std::uint64_t row = predictorRow(filter);
    run.result.exceeded = row > std::min(longestRow, run.left);
    if (run.result.exceeded) return false;
    run.left -= row;
    const auto parms = plainParms(filter);
    QPDFObjectHandle name = filter.name;
    if (!parms || !name.isName()) return false;
    if (index == stages_.size()) stages_.push_back(QPDFObjectHandle::newStream(scratch_.get()));
    QPDFObjectHandle stage = stages_[index];
    const auto provide = [&run, index, from = run.last](Pipeline* next, bool, bool) {
        return index == 0 ? send(from, true, next) : run.pass(from, false, next);
    };
    stage.replaceStreamData(provide, QPDFObjectHandle::newName(name.getName()), *parms);
    run.last = stage;
    return stage.pipeStreamData(nullptr, 0, qpdf_dl_specialized);
}

Decoded Decoder::decode(const QPDFObjectHandle& stream, const FilterChain& chain,
                        std::uint64_t& left, Pipeline* next) {
    Run run{left, stream};
    for (std::size_t index = 0; index < chain.size(); ++index) {
        if (!add(chain[index], index, run)) return run.result;
    }
    run.result.known = true;
    run.result.whole = run.pass(run.last, chain.empty(), next);
    run.result.doubted = !scratch_->getWarnings().empty();
    return run.result;
}

} // namespace Libraries::Files::PDF::Import
