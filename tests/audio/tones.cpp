#include "audio/tones.h"

#include "data/binary_reader.h"

#include <algorithm>
#include <cmath>
#include <vorbis/vorbisenc.h>

platform::Bytes wav(double seconds, double hertz) {
    const auto samples = static_cast<uint32_t>(seconds * kRate);
    cBinaryWriter out;
    out.raw("RIFF", 4);
    out.u32(36 + 2 * samples);
    out.raw("WAVEfmt ", 8);
    out.u32(16);
    out.u16(1);
    out.u16(1);
    out.u32(kRate);
    out.u32(kRate * 2);
    out.u16(2);
    out.u16(16);
    out.raw("data", 4);
    out.u32(2 * samples);
    for (uint32_t i = 0; i < samples; ++i)
        out.u16(static_cast<uint16_t>(static_cast<int16_t>(12000 * std::sin(6.2831853 * hertz * i / kRate))));
    return out.bytes();
}

platform::Bytes ogg(double seconds) {
    platform::Bytes file;
    vorbis_info info;
    vorbis_comment comment;
    vorbis_dsp_state dsp;
    vorbis_block block;
    ogg_stream_state stream;
    vorbis_info_init(&info);
    vorbis_encode_init_vbr(&info, 2, kRate, 0.2f);
    vorbis_comment_init(&comment);
    vorbis_analysis_init(&dsp, &info);
    vorbis_block_init(&dsp, &block);
    ogg_stream_init(&stream, 1);
    ogg_packet packets[3];
    vorbis_analysis_headerout(&dsp, &comment, &packets[0], &packets[1], &packets[2]);
    for (ogg_packet& p : packets) ogg_stream_packetin(&stream, &p);
    const auto drain = [&](auto next) {
        ogg_page page;
        while (next(&stream, &page)) {
            file.insert(file.end(), page.header, page.header + page.header_len);
            file.insert(file.end(), page.body, page.body + page.body_len);
        }
    };
    drain(ogg_stream_flush);
    const int total = static_cast<int>(seconds * kRate), piece = 4096;
    for (int at = 0; at < total + piece; at += piece) {
        const int n = std::clamp(total - at, 0, piece); // 0 ends the stream
        float** buffer = vorbis_analysis_buffer(&dsp, piece);
        for (int i = 0; i < n; ++i)
            buffer[0][i] = buffer[1][i] =
                0.3f * std::sin(6.2831853f * 330 * static_cast<float>(at + i) / kRate);
        vorbis_analysis_wrote(&dsp, n);
        while (vorbis_analysis_blockout(&dsp, &block) == 1) {
            vorbis_analysis(&block, nullptr);
            vorbis_bitrate_addblock(&block);
            ogg_packet packet;
            while (vorbis_bitrate_flushpacket(&dsp, &packet)) {
                ogg_stream_packetin(&stream, &packet);
                drain(ogg_stream_pageout);
            }
        }
    }
    drain(ogg_stream_flush);
    ogg_stream_clear(&stream);
    vorbis_block_clear(&block);
    vorbis_dsp_clear(&dsp);
    vorbis_comment_clear(&comment);
    vorbis_info_clear(&info);
    return file;
}
