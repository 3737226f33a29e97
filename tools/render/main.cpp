// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/Batch.h"
#include "tools/render/CommandLine.h"
#include "tools/render/Interruption.h"
#include "tools/render/Messages.h"
#include "tools/render/OfflineRender.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/PluginLibrary.h"
#include "tools/render/PluginListing.h"
#include "tools/render/ProgressBar.h"
#include "tools/render/RenderReport.h"
#include "tools/render/SoundFile.h"
#include "tools/render/TargetFile.h"
#include "zlib/common/objects/ZException.h"

#include <fmt/format.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace orvane
{

namespace
{

constexpr int kFailed = 2;

/// Ends the program by the signal itself, so that the calling shell sees how it ended.
[[noreturn]] void endBySignal(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(128 + signal);
}

void printNotes(const std::vector<std::string>& notes)
{
    for (const std::string& note : notes)
        printNote(note);
}

void renderOne(const CommandLine& command)
{
    const RenderRequest& request = command.request;
    const auto plugin = openPlugin(command.library);
    RenderResult result;
    {
        ProgressBar progress(isStandardStream(request.input) ? 0 : expectedFrames(request.input),
                             1);
        result = renderOffline(request, *plugin,
                               [&progress](std::int64_t frames) { progress.Add(frames); });
    }
    printNotes(result.notes);
    const std::string report = textReport(request, result);
    if (isStandardStream(request.output))
        fmt::print(stderr, "{}", report);
    else
        printText(report);
}

int run(CommandLine& command)
{
    if (command.library.empty())
        command.library = findProductLibrary();
    if (command.lists) {
        const auto plugin = openPlugin(command.library);
        printText(describePlugin(*plugin));
        return 0;
    }
    watchForInterruption();
    if (!command.inputs.empty()) {
        const std::size_t failures =
            renderBatch(command.request, command.inputs, command.folder, command.library);
        return failures == 0 ? 0 : kFailed;
    }
    if (command.request.input.empty()) {
        const auto plugin = openPlugin(command.library);
        printNotes(drawWindow(command.request, *plugin));
        return 0;
    }
    renderOne(command);
    return 0;
}

int parseAndRun(int argc, char** argv)
{
    std::optional<CommandLine> command = parseCommandLine(argc, argv);
    return command ? run(*command) : 0;
}

}  // namespace

}  // namespace orvane

int main(int argc, char** argv)
{
    using namespace orvane;
    try {
        return parseAndRun(argc, argv);
    } catch (const Interruption& interruption) {
        endBySignal(interruption.signal);
    } catch (const ZException& exception) {
        printFailure(exception.GetMessage().ToNarrow());
    } catch (const std::exception& exception) {
        printFailure(exception.what());
    }
    return kFailed;
}
