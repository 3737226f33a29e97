// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/Batch.h"

#include "tools/render/Failure.h"
#include "tools/render/Interruption.h"
#include "tools/render/Messages.h"
#include "tools/render/PluginInstance.h"
#include "tools/render/ProgressBar.h"
#include "tools/render/RenderReport.h"
#include "tools/render/SoundFormats.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <string_view>
#include <thread>

namespace orvane
{

namespace
{

namespace fs = std::filesystem;

// First bytes of the lines that a rendering process sends to the program.
constexpr char kFramesLine = 'f';   // frames of sound since the last such line
constexpr char kReportLine = 'r';   // a line of the report
constexpr char kNoteLine = 'n';     // a note for standard error
constexpr char kFailureLine = 'e';  // the reason of the failure

/// The end of the pipe that a rendering process writes to.
class Sender
{
public:
    explicit Sender(int descriptor)
        : mDescriptor(descriptor)
    {
    }

    void Send(char kind, std::string_view line) const
    {
        const std::string bytes = fmt::format("{}{}\n", kind, line);
        std::string_view rest = bytes;
        while (!rest.empty()) {
            const ssize_t count = ::write(mDescriptor, rest.data(), rest.size());
            if (count < 0 && errno != EINTR)
                std::_Exit(1);  // the main process has ended
            rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
    }

    void SendLines(char kind, std::string_view text) const
    {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            Send(kind, text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
    }

private:
    int mDescriptor;
};

/// Renders one input and ends this process.
[[noreturn]] void renderInProcess(const RenderRequest& request, const fs::path& library,
                                  const Sender& sender)
{
    int status = 1;
    try {
        const auto plugin = openPlugin(library);
        const RenderResult result = renderOffline(request, *plugin, [&sender](std::int64_t frames) {
            sender.Send(kFramesLine, std::to_string(frames));
        });
        for (const std::string& note : result.notes)
            sender.Send(kNoteLine, note);
        sender.SendLines(kReportLine, textReport(request, result));
        status = 0;
    } catch (const Interruption&) {
        // The main process got the same signal and ends because of it.
    } catch (const ZException& exception) {
        sender.Send(kFailureLine, oneLine(exception.GetMessage().ToNarrow()));
    } catch (const std::exception& exception) {
        sender.Send(kFailureLine, oneLine(exception.what()));
    }
    std::_Exit(status);
}

/// A process that renders one input.
struct Worker
{
    pid_t process;
    int pipe;           // read end
    std::size_t input;  // its index
    std::string rest;   // received after the last whole line
    std::string report;
    std::string failure;
};

/// All processes of a batch.
class Workers
{
public:
    Workers(std::vector<RenderRequest> requests, const fs::path& library, std::int64_t totalFrames)
        : mRequests(std::move(requests))
        , mLibrary(library)
        , mProgress(totalFrames, mRequests.size())
    {
    }
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;
    ~Workers()
    {
        for (const Worker& worker : mRunning)
            ::kill(worker.process, SIGTERM);
        for (Worker& worker : mRunning)
            End(worker);
    }

    /// Runs them all; returns the failures, a line for each.
    [[nodiscard]] std::vector<std::string> Run()
    {
        const std::size_t cores = std::max(std::thread::hardware_concurrency(), 1u);
        while (mNext < mRequests.size() || !mRunning.empty()) {
            while (mNext < mRequests.size() && mRunning.size() < cores)
                StartNext();
            throwIfInterrupted();
            Receive();
        }
        return mFailures;
    }

private:
    void StartNext()
    {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0)
            fail("cannot start a render: {}", std::strerror(errno));
        const RenderRequest& request = mRequests[mNext];
        const pid_t process = ::fork();
        if (process < 0)
            fail("cannot start a render: {}", std::strerror(errno));
        if (process == 0) {
            ::close(ends[0]);
            renderInProcess(request, mLibrary, Sender(ends[1]));
        }
        ::close(ends[1]);
        mRunning.push_back({process, ends[0], mNext++, {}, {}, {}});
    }

    void Receive()
    {
        std::vector<pollfd> polled;
        for (const Worker& worker : mRunning)
            polled.push_back({worker.pipe, POLLIN, 0});
        if (::poll(polled.data(), polled.size(), -1) < 0)
            return;  // interrupted by a signal
        for (std::size_t i = mRunning.size(); i-- > 0;) {
            if (polled[i].revents != 0 && !Read(mRunning[i])) {
                Finish(mRunning[i]);
                mRunning.erase(mRunning.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
    }

    /// False at the end of the pipe.
    bool Read(Worker& worker)
    {
        std::array<char, 4096> bytes{};
        const ssize_t count = ::read(worker.pipe, bytes.data(), bytes.size());
        if (count <= 0)
            return count < 0 && errno == EINTR;
        worker.rest.append(bytes.data(), static_cast<std::size_t>(count));
        for (std::size_t end = 0; (end = worker.rest.find('\n')) != std::string::npos;) {
            Take(worker, worker.rest.front(), worker.rest.substr(1, end - 1));
            worker.rest.erase(0, end + 1);
        }
        return true;
    }

    void Take(Worker& worker, char kind, const std::string& line)
    {
        switch (kind) {
        case kFramesLine:
            return mProgress.Add(std::atoll(line.c_str()));
        case kReportLine:
            worker.report += line + "\n";
            return;
        case kNoteLine:
            mProgress.Clear();
            return printNote(mRequests[worker.input].input.string() + ": " + line);
        case kFailureLine:
            worker.failure = line;
            return;
        default:
            assert(false);
        }
    }

    /// Waits for a process whose pipe has ended. Returns its wait status.
    static int End(Worker& worker)
    {
        int status = 0;
        ::close(worker.pipe);
        while (::waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
        }
        return status;
    }

    void Finish(Worker& worker)
    {
        const int status = End(worker);
        mProgress.Clear();
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
            printText(worker.report);
        else if (WIFSIGNALED(status))
            worker.failure =
                fmt::format("{}: the plug-in crashed ({})", mRequests[worker.input].input.string(),
                            ::strsignal(WTERMSIG(status)));
        if (!worker.failure.empty())
            mFailures.push_back(worker.failure);
        mProgress.AddFile();
    }

    std::vector<RenderRequest> mRequests;
    const fs::path& mLibrary;
    ProgressBar mProgress;
    std::vector<Worker> mRunning;
    std::size_t mNext = 0;  // index of the next request to start
    std::vector<std::string> mFailures;
};

void makeFolder(const fs::path& folder)
{
    std::error_code error;
    if (fs::is_directory(folder, error))
        return;
    if (fs::exists(folder, error))
        fail("{} is not a folder: several inputs need a folder for their outputs", folder.string());
    // A path with a slash at its end has an empty last part.
    const fs::path named = folder.has_filename() ? folder : folder.parent_path();
    if (!fs::create_directory(named, error))
        fail("cannot make the folder {}: {}", folder.string(), error.message());
}

std::vector<RenderRequest> requestsFor(const RenderRequest& common,
                                       const std::vector<fs::path>& inputs, const fs::path& folder)
{
    std::vector<RenderRequest> requests;
    std::set<fs::path> names;
    for (const fs::path& input : inputs) {
        if (input == "-")
            fail("- is standard input: give it alone, not among several inputs");
        RenderRequest request = common;
        request.input = input;
        request.output = folder / input.filename();
        if (!common.format.empty())
            request.output.replace_extension(endingOfFormat(common.format));
        if (!names.insert(request.output).second)
            fail("two inputs would be written to {}: render them into different folders",
                 request.output.string());
        requests.push_back(request);
    }
    return requests;
}

}  // namespace

std::size_t renderBatch(const RenderRequest& request, const std::vector<fs::path>& inputs,
                        const fs::path& folder, const fs::path& library)
{
    std::vector<RenderRequest> requests = requestsFor(request, inputs, folder);
    makeFolder(folder);
    std::int64_t frames = 0;
    for (const fs::path& input : inputs)
        frames += expectedFrames(input);
    std::vector<std::string> failures;
    {
        Workers workers(std::move(requests), library, frames);
        failures = workers.Run();
    }
    for (const std::string& failure : failures)
        printFailure(failure);
    if (!failures.empty())
        printFailure(fmt::format("{} of {} inputs failed", failures.size(), inputs.size()));
    return failures.size();
}

}  // namespace orvane
