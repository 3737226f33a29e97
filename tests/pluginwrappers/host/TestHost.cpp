// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestHost.h"

#include "pluginwrappers/interface/VstOpcodes.h"
#include "support/Eventually.h"

#include <dlfcn.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace orvane
{

namespace
{

struct HostLog
{
    std::mutex mutex;
    std::intptr_t versionAnswer = 0;
    std::atomic<bool> offline = false;  // asked at every block, so neither locked nor in the log
    std::vector<HostCall> calls;
};

HostLog& hostLog()
{
    static HostLog log;
    return log;
}

}  // namespace

PluginLibrary::PluginLibrary()
    : mHandle(::dlopen(KESTRUNE_PLUGIN_LIBRARY, RTLD_NOW | RTLD_LOCAL))
{
    if (mHandle == nullptr)
        throw std::runtime_error(::dlerror());
}

PluginLibrary::~PluginLibrary()
{
    ::dlclose(mHandle);
}

PluginEntryProc PluginLibrary::Entry(const char* name) const
{
    return reinterpret_cast<PluginEntryProc>(::dlsym(mHandle, name));
}

bool PluginLibrary::IsLoaded()
{
    void* const handle = ::dlopen(KESTRUNE_PLUGIN_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr)
        ::dlclose(handle);
    return handle != nullptr;
}

TestHost::TestHost(std::intptr_t versionAnswer)
{
    const std::lock_guard lock(hostLog().mutex);
    hostLog().versionAnswer = versionAnswer;
    hostLog().offline = false;
    hostLog().calls.clear();
}

std::intptr_t TestHost::callback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                                 std::intptr_t value, void* /*ptr*/, float opt)
{
    if (opcode == audioMasterGetCurrentProcessLevel)
        return hostLog().offline ? kVstProcessLevelOffline : 0;
    const std::lock_guard lock(hostLog().mutex);
    hostLog().calls.push_back({effect, opcode, index, value, opt});
    return opcode == audioMasterVersion ? hostLog().versionAnswer : 0;
}

void TestHost::SetOffline(bool offline)
{
    hostLog().offline = offline;
}

std::vector<HostCall> TestHost::Calls()
{
    const std::lock_guard lock(hostLog().mutex);
    return hostLog().calls;
}

std::intptr_t ask(AEffect* effect, std::int32_t opcode, std::int32_t index, std::intptr_t value,
                  void* ptr, float opt)
{
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
}

void closeEffect(AEffect* effect)
{
    ask(effect, effClose);
}

std::size_t threadCount()
{
    // The thread sanitizer starts a thread of its own with the first of the process.
    [[maybe_unused]] static const bool settled = [] {
        std::thread([] {}).join();
        return true;
    }();
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
}

bool threadsFallTo(std::size_t count)
{
    return eventually([count] { return threadCount() <= count; });
}

}  // namespace orvane
