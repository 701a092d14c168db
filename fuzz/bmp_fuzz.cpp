#include "render/image.h"
#include "support.h"

FUZZ_TARGET(bmp) {
    fuzz::putFile("in.bmp", fuzz::text(data, size));
    cImage image;
    const int result = image.load("in.bmp");
    const auto expected = static_cast<size_t>(image.width()) * static_cast<size_t>(image.height()) *
                          static_cast<size_t>(image.bpp() / 8);
    fuzz::require(image.pixels().size() == expected, "a picture is whole or not there");
    fuzz::require((result == 0) == (expected != 0), "only what was read has pixels");
    if (result != 0) return 0;
    image.swapChannels(0, 2);
    return fuzz::cDigest().add(image.pixels().data(), expected).addValue(image.width()).value();
}
