// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/linux/native/ZPipeSignalBlock.h"

#include "support/Test.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

using namespace orvane;

namespace
{

volatile sig_atomic_t signals = 0;

}  // namespace

TEST(ZPipeSignalBlockTest, BrokenPipeRaisesNoSignalInside)
{
    const auto before = std::signal(SIGPIPE, [](int) { signals = signals + 1; });
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    close(ends[1]);
    {
        const ZPipeSignalBlock outer;
        const ZPipeSignalBlock inner;
        EXPECT_EQ(write(ends[0], "x", 1), -1);
        EXPECT_EQ(errno, EPIPE);
    }
    EXPECT_EQ(signals, 0);
    EXPECT_EQ(write(ends[0], "x", 1), -1);
    EXPECT_EQ(signals, 1) << "the host's own";
    close(ends[0]);
    std::signal(SIGPIPE, before);
}
