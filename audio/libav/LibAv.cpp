#include "audio/libav/LibAv.h"

#include "audio/pcm/Failure.h"

#include <dlfcn.h>
#include <new>
#include <string>

using quav::pcm::Failure;

namespace quav::libav {

namespace {

template <typename Owner>
Owner owned(typename Owner::pointer made) {
    if (made == nullptr) {
        throw std::bad_alloc();
    }
    return Owner(made);
}

} // namespace

Library::Library(const char* name, int majorVersion) {
    const std::string version = std::to_string(majorVersion);
    // The layout of FFmpeg's structures changes with the major version: no other one will do.
    handle_ = ::dlopen((name + std::string(".so.") + version).c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (handle_ == nullptr) {
        throw Failure(Failure::Kind::Read, std::string("FFmpeg's ") + name + " " + version +
                                               " is needed and cannot be loaded (" + ::dlerror() +
                                               "); install the package " + name + version);
    }
}

Symbol Library::operator[](const char* function) const {
    void* const address = ::dlsym(handle_, function);
    if (address == nullptr) {
        throw Failure(Failure::Kind::Read, ::dlerror());
    }
    return Symbol(address);
}

const Codec& codec() {
    static const Codec loaded = [] {
        const Codec functions;
        functions.logSetLevel(AV_LOG_QUIET);
        return functions;
    }();
    return loaded;
}

const Format& format() {
    static const Format loaded;
    return loaded;
}

CodecContext makeContext(const AVCodec* codec) {
    return owned<CodecContext>(libav::codec().allocContext(codec));
}

Frame makeFrame() {
    return owned<Frame>(codec().frameAlloc());
}

Packet makePacket() {
    return owned<Packet>(codec().packetAlloc());
}

} // namespace quav::libav
