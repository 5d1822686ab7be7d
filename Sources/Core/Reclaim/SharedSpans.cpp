#include "Core/Reclaim/SharedSpans.h"

#include "Base/Bytes.h"

#include <algorithm>

namespace brimvale {

namespace {

std::uint64_t endOf(const BlockPlace &place) {
    return place.start + static_cast<std::uint64_t>(place.bytes);
}

} // namespace

void SharedSpans::addEdges(const BlockPlace &place, int files, int copies, std::size_t snapshot) {
    edges_.push_back({place.start, files, copies, snapshot});
    edges_.push_back({endOf(place), -files, -copies, snapshot});
}

void SharedSpans::add(const std::vector<BlockPlace> &places) {
    for (const BlockPlace &place : places) {
        if (!place.isPacked) {
            addEdges(place, 1, 0, 0);
            continue;
        }
        Packed &packed = packed_[place.start];
        ++packed.files;
        packed.bytes = std::max(packed.bytes, place.bytes);
    }
}

void SharedSpans::addKept(const std::vector<BlockPlace> &places, std::size_t snapshot) {
    for (const BlockPlace &place : places) {
        if (!place.isPacked) {
            addEdges(place, 0, 1, snapshot);
            continue;
        }
        Packed &packed = packed_[place.start];
        packed.isKept = true;
        packed.snapshot = snapshot;
    }
}

void SharedSpans::count(Sums &sums, int files, const std::size_t *snapshot, std::int64_t bytes) {
    if (files == 0 || bytes == 0)
        return;
    std::int64_t &sum = snapshot != nullptr ? sums.kept[*snapshot] : files > 1 ? sums.within : sums.elsewhere;
    sum = checkedAdd(sum, bytes);
}

SharedSpans::Sums SharedSpans::sums() const {
    Sums sums;
    for (const auto &[start, packed] : packed_)
        count(sums, packed.files, packed.isKept ? &packed.snapshot : nullptr, packed.bytes);

    std::vector<Edge> edges = edges_;
    std::sort(edges.begin(), edges.end(), [](const Edge &a, const Edge &b) { return a.place < b.place; });
    int files = 0;
    std::map<std::size_t, int> copies; // by snapshot
    std::uint64_t place = 0;
    for (const Edge &edge : edges) {
        count(sums, files, copies.empty() ? nullptr : &copies.begin()->first,
              static_cast<std::int64_t>(edge.place - place));
        place = edge.place;
        files += edge.files;
        if (edge.copies != 0 && (copies[edge.snapshot] += edge.copies) == 0)
            copies.erase(edge.snapshot);
    }
    return sums;
}

bool areCovered(const std::vector<BlockPlace> &places, const std::vector<BlockPlace> &others) {
    SharedSpans spans;
    spans.add(places);
    spans.addKept(others, 0);
    const SharedSpans::Sums sums = spans.sums();
    return sums.elsewhere == 0 && sums.within == 0;
}

} // namespace brimvale
