#include "virtual/record.h"

#include <algorithm>

#include "virtual/edge_trigger.h"
#include "virtual/signals.h"

namespace virtual_scope {
namespace {

SamplerPointer MakeMathSampler(const Record& record, const MathNode& node) {
    switch (node.kind) {
        case MathNode::Kind::kNumber:
            return std::make_unique<ConstantSampler>(node.number);
        case MathNode::Kind::kChannel:
            return MakeChannelSampler(record, node.index);
        case MathNode::Kind::kReference:
            return std::make_unique<StoredSampler>(
                record.axis, record.references.at(static_cast<std::size_t>(node.index)));
        case MathNode::Kind::kMath:
            return MakeMathSampler(record, *record.math.at(static_cast<std::size_t>(node.index)));
        case MathNode::Kind::kOperation:
            break;
    }
    return std::make_unique<OperationSampler>(node.operation, MakeMathSampler(record, *node.left),
                                              MakeMathSampler(record, *node.right));
}

SamplerPointer MakePlainSampler(const Record& record, const WaveformSource& source) {
    const auto index = static_cast<std::size_t>(source.index);
    switch (source.kind) {
        case SourceKind::kMath:
            return MakeMathSampler(record, *record.math.at(index));
        case SourceKind::kReference:
            return std::make_unique<StoredSampler>(record.axis, record.references.at(index));
        case SourceKind::kChannel:
        case SourceKind::kDigital:  // it has no volts and is read by its words
            break;
    }
    return MakeChannelSampler(record, source.index);
}

}  // namespace

Record Record::Earlier(std::uint64_t ago) const {
    Record earlier = *this;
    earlier.acquisition -= ago;
    if (!triggered) {
        earlier.shift = UntriggeredShift(earlier.acquisition);
    }
    return earlier;
}

Record ReferenceRecord(const Record& from, int index) {
    const auto place = static_cast<std::size_t>(index);
    const StoredWaveform& stored = *from.references.at(place);
    Record record;
    record.references = from.references;
    record.length = static_cast<std::int64_t>(stored.volts.size());
    record.axis = stored.axis;
    record.channels.at(place) = {
        .scale = stored.scale, .position = stored.position, .offset = stored.offset};
    return record;
}

SamplerPointer MakeSampler(const Record& record, const WaveformSource& source) {
    if (!record.HoldsPairs()) {
        return MakePlainSampler(record, source);
    }
    Record fine = record;
    fine.axis.interval /= static_cast<double>(kFinePoints);
    fine.axis.trigger *= kFinePoints;
    std::int64_t depth = 1;
    if (record.mode == AcquisitionMode::kEnvelope) {
        depth = std::min(record.acquisitions, kEnvelopeDepth);
    }
    std::vector<SamplerPointer> samplers;
    for (std::int64_t i = 0; i < depth; ++i) {
        samplers.push_back(MakePlainSampler(fine.Earlier(static_cast<std::uint64_t>(i)), source));
    }
    return std::make_unique<ExtremeSampler>(std::move(samplers));
}

}  // namespace virtual_scope
