// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZSharedPixels.h"

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cassert>

namespace orvane
{

namespace
{

constexpr std::size_t kBytes = ZSharedPixels::kCapacity * sizeof(std::uint32_t);

/// Descriptors can only be passed over a local socket, not to a server behind a tunnel.
bool isLocal(xcb_connection_t* connection)
{
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    return getsockname(xcb_get_file_descriptor(connection), reinterpret_cast<sockaddr*>(&address),
                       &length) == 0 &&
           address.ss_family == AF_UNIX;
}

bool takesDescriptors(xcb_connection_t* connection)
{
    const auto* const extension = xcb_get_extension_data(connection, &xcb_shm_id);
    if (!extension || !extension->present)
        return false;
    const auto version =
        xcbReply(xcb_shm_query_version_reply, connection, xcb_shm_query_version(connection));
    return version && (version->major_version > 1 || version->minor_version >= 2);
}

/// Maps the whole capacity; the system allocates pages as they are written.
void* mapMemory(int descriptor)
{
    if (ftruncate(descriptor, static_cast<off_t>(kBytes)) != 0)
        return MAP_FAILED;
    return mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
}

}  // namespace

std::unique_ptr<ZSharedPixels> ZSharedPixels::Create(xcb_connection_t* connection)
{
    if (!isLocal(connection) || !takesDescriptors(connection))
        return nullptr;
    const int descriptor = memfd_create("window pixels", MFD_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    void* const memory = mapMemory(descriptor);
    if (memory == MAP_FAILED) {
        close(descriptor);
        return nullptr;
    }
    // The request takes the descriptor over. A server of another user may refuse the memory.
    const xcb_shm_seg_t id = xcb_generate_id(connection);
    const XcbPointer<xcb_generic_error_t> error(
        xcb_request_check(connection, xcb_shm_attach_fd_checked(connection, id, descriptor, 1)));
    if (error || xcb_connection_has_error(connection) != 0) {
        munmap(memory, kBytes);
        return nullptr;
    }
    return std::unique_ptr<ZSharedPixels>(
        new ZSharedPixels(connection, {static_cast<std::uint32_t*>(memory), kCapacity}, id));
}

ZSharedPixels::ZSharedPixels(xcb_connection_t* connection, std::span<std::uint32_t> memory,
                             xcb_shm_seg_t id)
    : mConnection(connection)
    , mMemory(memory)
    , mId(id)
{
    assert(mConnection && mMemory.size() == kCapacity);
}

ZSharedPixels::~ZSharedPixels()
{
    munmap(mMemory.data(), kBytes);
}

std::span<std::uint32_t> ZSharedPixels::Reserve(std::size_t count)
{
    assert(count <= kCapacity);
    mBegin = mEnd;
    if (mMemory.size() - mBegin < count) {
        // Requests are served in order: when any request is answered, all earlier ones are done.
        static_cast<void>(
            xcbReply(xcb_get_input_focus_reply, mConnection, xcb_get_input_focus(mConnection)));
        mBegin = 0;
    }
    mEnd = mBegin + count;
    return mMemory.subspan(mBegin, count);
}

void ZSharedPixels::Put(xcb_window_t window, xcb_gcontext_t context, std::uint8_t depth,
                        const xcb_rectangle_t& rect) const
{
    assert(std::size_t{rect.width} * rect.height == mEnd - mBegin);
    xcb_shm_put_image(mConnection, window, context, rect.width, rect.height, 0, 0, rect.width,
                      rect.height, rect.x, rect.y, depth, XCB_IMAGE_FORMAT_Z_PIXMAP, 0, mId,
                      static_cast<std::uint32_t>(mBegin * sizeof(std::uint32_t)));
}

}  // namespace orvane
