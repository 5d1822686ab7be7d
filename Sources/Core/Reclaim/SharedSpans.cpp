#include "Core/Reclaim/SharedSpans.h"

#include "Base/Bytes.h"

#include <algorithm>

namespace brimvale {

namespace {

template<class Edge>
bool byPlace(const Edge &a, const Edge &b) {
    return a.place < b.place;
}

std::uint64_t endOf(const BlockPlace &place) {
    return place.start + static_cast<std::uint64_t>(place.bytes);
}

} // namespace

void SharedSpans::addEdges(const BlockPlace &place, int files, int copies, std::size_t snapshot) {
    edges_.push_back({place.start, files, copies, snapshot});
    edges_.push_back({endOf(place), -files, -copies, snapshot});
}

void SharedSpans::add(const std::vector<BlockPlace> &places, std::int64_t reach) {
    for (const BlockPlace &place : places) {
        if (!place.isPacked) {
            addEdges(place, 1, 0, 0);
            if (reach > 0)
                rough_.push_back({{place.start, endOf(place)}, static_cast<std::uint64_t>(reach)});
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

/// The places that several files of the selection have, in order and not touching.
std::vector<SharedSpans::Span> SharedSpans::commonSpans() const {
    std::vector<Edge> edges = edges_;
    std::sort(edges.begin(), edges.end(), byPlace<Edge>);
    std::vector<Span> common;
    int files = 0;
    std::uint64_t place = 0;
    for (const Edge &edge : edges) {
        if (files > 1 && edge.place > place) {
            if (!common.empty() && common.back().end == place)
                common.back().end = edge.place;
            else
                common.push_back({place, edge.place});
        }
        place = edge.place;
        files += edge.files;
    }
    return common;
}

/// Where a file shares some blocks with the selection, the blocks beside them may be shared with nothing
/// else.
std::vector<SharedSpans::Edge> SharedSpans::edgesOfNeighbours() const {
    std::vector<Edge> edges;
    if (rough_.empty())
        return edges;
    const std::vector<Span> common = commonSpans();
    for (const auto &[span, reach] : rough_) {
        auto next = std::partition_point(common.begin(), common.end(),
                                         [start = span.start](const Span &one) { return one.end <= start; });
        for (; next != common.end() && next->start < span.end; ++next) {
            const std::uint64_t before = next->start - std::min(next->start, reach);
            edges.push_back({std::max(span.start, before), 0, 0, 0, 1});
            edges.push_back({std::min(span.end, next->end + reach), 0, 0, 0, -1});
        }
    }
    return edges;
}

SharedSpans::Sums SharedSpans::sums() const {
    Sums sums;
    for (const auto &[start, packed] : packed_)
        count(sums, packed.files, packed.isKept ? &packed.snapshot : nullptr, packed.bytes);

    std::vector<Edge> edges = edgesOfNeighbours();
    edges.insert(edges.end(), edges_.begin(), edges_.end());
    std::sort(edges.begin(), edges.end(), byPlace<Edge>);
    int files = 0, neighbours = 0;
    std::map<std::size_t, int> copies; // by snapshot
    std::uint64_t place = 0;
    for (const Edge &edge : edges) {
        count(sums, neighbours > 0 ? std::max(files, 2) : files,
              copies.empty() ? nullptr : &copies.begin()->first,
              static_cast<std::int64_t>(edge.place - place));
        place = edge.place;
        files += edge.files;
        neighbours += edge.neighbours;
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
