#include "forge/ogg.h"

#include <algorithm>
#include <vorbis/vorbisenc.h>

namespace forge {
namespace {
constexpr int kSerial = 1;
constexpr size_t kBlock = 4096;

class Encoder {
public:
    Encoder(const std::string& title, float quality) {
        vorbis_info_init(&info_);
        vorbis_comment_init(&comment_);
        vorbis_comment_add_tag(&comment_, "TITLE", title.c_str());
        good_ = vorbis_encode_init_vbr(&info_, 2, kMusicRate, quality) == 0;
        if (!good_) return;
        vorbis_analysis_init(&state_, &info_);
        vorbis_block_init(&state_, &block_);
        ogg_stream_init(&stream_, kSerial);
    }
    ~Encoder() {
        if (good_) {
            ogg_stream_clear(&stream_);
            vorbis_block_clear(&block_);
            vorbis_dsp_clear(&state_);
        }
        vorbis_comment_clear(&comment_);
        vorbis_info_clear(&info_);
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    platform::Bytes encode(const Stereo& sound) {
        if (!good_) return {};
        ogg_packet head, comment, code;
        vorbis_analysis_headerout(&state_, &comment_, &head, &comment, &code);
        for (ogg_packet* p : {&head, &comment, &code}) ogg_stream_packetin(&stream_, p);
        pages(true); // sound starts on a page of its own
        for (size_t from = 0; from < sound.left.size(); from += kBlock) {
            const size_t count = std::min(kBlock, sound.left.size() - from);
            float** buffer = vorbis_analysis_buffer(&state_, static_cast<int>(count));
            std::copy_n(sound.left.data() + from, count, buffer[0]);
            std::copy_n(sound.right.data() + from, count, buffer[1]);
            vorbis_analysis_wrote(&state_, static_cast<int>(count));
            packets();
        }
        vorbis_analysis_wrote(&state_, 0); // the end
        packets();
        return std::move(bytes_);
    }

private:
    void packets() {
        ogg_packet packet;
        while (vorbis_analysis_blockout(&state_, &block_) == 1) {
            vorbis_analysis(&block_, nullptr);
            vorbis_bitrate_addblock(&block_);
            while (vorbis_bitrate_flushpacket(&state_, &packet)) ogg_stream_packetin(&stream_, &packet);
        }
        pages(false);
    }

    void pages(bool flush) {
        ogg_page page;
        while (flush ? ogg_stream_flush(&stream_, &page) : ogg_stream_pageout(&stream_, &page)) {
            bytes_.insert(bytes_.end(), page.header, page.header + page.header_len);
            bytes_.insert(bytes_.end(), page.body, page.body + page.body_len);
        }
    }

    vorbis_info info_;
    vorbis_comment comment_;
    vorbis_dsp_state state_;
    vorbis_block block_;
    ogg_stream_state stream_;
    platform::Bytes bytes_;
    bool good_ = false;
};
} // namespace

platform::Bytes oggFile(const Stereo& sound, const std::string& title, float quality) {
    return Encoder(title, quality).encode(sound);
}
} // namespace forge
