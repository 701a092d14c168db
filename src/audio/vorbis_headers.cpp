// A few bytes of a setup header can stand for tables of gigabytes, which the decoder would make without
// asking. The order of the bits is that of the Vorbis I format.
#include "audio/vorbis_headers.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <ogg/ogg.h>

namespace {
constexpr int kNameBytes = 7; ///< the packet's type and "vorbis"
constexpr int kChannelsAt = 11;
constexpr int kHeaders = 3;
constexpr size_t kMostStreams = 16; ///< with unfinished headers at one time
constexpr long kBookMark = 0x564342;

struct LogicalStream {
    ogg_stream_state state{};
    int packets = 0;

    explicit LogicalStream(int serial) { ogg_stream_init(&state, serial); }
    ~LogicalStream() { ogg_stream_clear(&state); }
    LogicalStream(const LogicalStream&) = delete;
    LogicalStream& operator=(const LogicalStream&) = delete;
};

int bitsOf(uint32_t value) {
    int bits = 0;
    for (; value != 0; value >>= 1) ++bits;
    return bits;
}

/// The largest number whose `dimensions`-th power is not above `entries`.
uint64_t sideOf(uint64_t entries, uint64_t dimensions) {
    if (dimensions == 0 || entries == 0) return 0;
    if (dimensions == 1) return entries;
    uint64_t side = 1;
    for (;; ++side) {
        uint64_t power = 1;
        for (uint64_t d = 0; d < dimensions && power <= entries; ++d) power *= side + 1;
        if (power > entries) return side;
    }
}

/// The lengths of a book's code words; false at the packet's end.
bool skipLengths(oggpack_buffer& in, uint32_t entries) {
    if (oggpack_read(&in, 1) > 0) { // in order: so many of each length
        oggpack_read(&in, 5);
        for (uint32_t at = 0; at < entries;) {
            const long run = oggpack_read(&in, bitsOf(entries - at));
            if (run < 0) return false;
            at += static_cast<uint32_t>(run);
            if (run == 0 && oggpack_look(&in, 1) < 0) return false;
        }
        return true;
    }
    const bool sparse = oggpack_read(&in, 1) > 0;
    for (uint32_t i = 0; i < entries; ++i) {
        const long used = sparse ? oggpack_read(&in, 1) : 1;
        if (used < 0 || (used > 0 && oggpack_read(&in, 5) < 0)) return false;
    }
    return true;
}

/// False when no further book can be read.
bool addBook(oggpack_buffer& in, uint64_t& cells) {
    if (oggpack_read(&in, 24) != kBookMark) return false;
    const long dimensions = oggpack_read(&in, 16), entries = oggpack_read(&in, 24);
    if (dimensions < 0 || entries < 0) return false;
    const auto words = static_cast<uint64_t>(entries), width = static_cast<uint64_t>(dimensions);
    cells += words * std::max<uint64_t>(width, 1);
    if (bitsOf(static_cast<uint32_t>(dimensions)) + bitsOf(static_cast<uint32_t>(entries)) > 24) return false;
    if (!skipLengths(in, static_cast<uint32_t>(entries))) return false;
    const long lookup = oggpack_read(&in, 4);
    if (lookup <= 0) return lookup == 0;
    oggpack_adv(&in, 32);
    oggpack_adv(&in, 32);
    const long bits = oggpack_read(&in, 4) + 1;
    oggpack_adv(&in, 1);
    const uint64_t values = lookup == 1 ? sideOf(words, width) : words * width;
    for (uint64_t i = 0; i < values; ++i)
        if (oggpack_read(&in, static_cast<int>(bits)) < 0) return false;
    return true;
}

void addPacket(const ogg_packet& packet, VorbisDemands& demands) {
    if (packet.bytes <= kNameBytes || std::memcmp(packet.packet + 1, "vorbis", 6) != 0) return;
    if (packet.packet[0] == 1 && packet.bytes > kChannelsAt)
        demands.channels = std::max<int>(demands.channels, packet.packet[kChannelsAt]);
    if (packet.packet[0] != 5) return;
    oggpack_buffer in;
    oggpack_readinit(&in, packet.packet, static_cast<int>(packet.bytes));
    oggpack_adv(&in, 8 * kNameBytes);
    const long books = oggpack_read(&in, 8) + 1;
    for (long i = 0; i < books && addBook(in, demands.tableCells); ++i) {
    }
}
} // namespace

VorbisDemands readVorbisDemands(const platform::Bytes& file) {
    VorbisDemands demands;
    if (file.empty()) return demands;
    ogg_sync_state sync;
    ogg_sync_init(&sync);
    const auto size = static_cast<long>(file.size());
    if (char* room = ogg_sync_buffer(&sync, size)) std::memcpy(room, file.data(), file.size());
    ogg_sync_wrote(&sync, size);
    std::map<int, LogicalStream> streams;
    ogg_page page;
    for (int found = ogg_sync_pageout(&sync, &page); found != 0; found = ogg_sync_pageout(&sync, &page)) {
        if (found < 0) continue; // bytes between pages
        const int serial = ogg_page_serialno(&page);
        if (ogg_page_bos(&page)) {
            streams.erase(serial);
            streams.try_emplace(serial, serial);
        }
        const auto at = streams.find(serial);
        if (at == streams.end()) continue;
        if (streams.size() > kMostStreams) {
            demands.tableCells = UINT64_MAX;
            break;
        }
        LogicalStream& stream = at->second;
        ogg_stream_pagein(&stream.state, &page);
        ogg_packet packet;
        for (int got = ogg_stream_packetout(&stream.state, &packet); got != 0;
             got = ogg_stream_packetout(&stream.state, &packet)) {
            if (got < 0) continue; // a page is missing
            ++stream.packets;
            addPacket(packet, demands);
        }
        if (stream.packets >= kHeaders) streams.erase(at);
    }
    streams.clear();
    ogg_sync_clear(&sync);
    return demands;
}
