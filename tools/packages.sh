# Debian packages by purpose; read by tools/setup.sh.
BUILD_PACKAGES="g++ cmake ninja-build pkg-config libsdl1.2-dev libgl-dev libglu1-mesa-dev libopenal-dev libalut-dev
    libvorbis-dev libphysfs-dev libcli11-dev libpng-dev"
PLAY_PACKAGES="libgl1-mesa-dri xvfb xauth x11-utils"
CHECK_PACKAGES="libgtest-dev libgmock-dev libbenchmark-dev libsdl1.2-compat xdotool
    clang libclang-rt-14-dev llvm"
