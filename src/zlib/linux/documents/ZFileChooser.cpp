// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/documents/ZFileChooser.h"

#include "zlib/common/objects/ZEventLoop.h"
#include "zlib/common/objects/ZInterfaceLock.h"
#include "zlib/common/objects/ZInterfaceThread.h"
#include "zlib/common/objects/ZMessageBox.h"
#include "zlib/linux/documents/ZDesktopProgram.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cassert>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace orvane
{

namespace
{

using Arguments = std::vector<std::string>;

/// A pipe for a program's output; the reading end does not block.
class Pipe
{
public:
    Pipe()
    {
        if (pipe2(mEnds.data(), O_CLOEXEC) == 0)
            fcntl(mEnds[0], F_SETFL, O_NONBLOCK);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe()
    {
        CloseWriter();
        if (mEnds[0] >= 0)
            close(mEnds[0]);
    }

    [[nodiscard]] bool IsOpen() const { return mEnds[0] >= 0; }
    [[nodiscard]] int Reader() const { return mEnds[0]; }
    [[nodiscard]] int Writer() const { return mEnds[1]; }
    /// Closes this process's writing end, so that the reader sees the end of the program's output.
    void CloseWriter()
    {
        if (mEnds[1] >= 0)
            close(mEnds[1]);
        mEnds[1] = -1;
    }

private:
    std::array<int, 2> mEnds{-1, -1};
};

bool isKde()
{
    const char* const desktop = std::getenv("XDG_CURRENT_DESKTOP");
    return desktop && std::string_view(desktop).find("KDE") != std::string_view::npos;
}

/// Returns a file name to start with, which shows the extension.
std::string suggestedName(const ZFileRequest& request)
{
    std::string name = "Untitled";
    if (!request.types.empty())
        name.append(".").append(request.types.front()->extension);
    return name;
}

/// Appends the options that put the dialog above a window of the host or ours.
void attach(Arguments& arguments, std::int32_t window, std::initializer_list<const char*> options)
{
    if (window == 0)
        return;
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.back() += std::to_string(static_cast<std::uint32_t>(window));
}

Arguments zenity(const ZFileRequest& request)
{
    Arguments arguments = {"zenity", "--file-selection",
                           "--title=" + ZFileChooser::WindowTitle(request)};
    attach(arguments, request.window, {"--modal", "--attach="});
    if (request.purpose == ZFileRequest::kSave)
        arguments.insert(arguments.end(),
                         {"--save", "--confirm-overwrite", "--filename=" + suggestedName(request)});
    for (const auto& type : request.types)
        arguments.push_back("--file-filter=" + ZFileChooser::FilterName(*type) + " | " +
                            ZFileChooser::FilterPattern(*type));
    return arguments;
}

Arguments kdialog(const ZFileRequest& request)
{
    const bool saves = request.purpose == ZFileRequest::kSave;
    std::string filter;
    for (const auto& type : request.types)
        filter.append(filter.empty() ? "" : "\n").append(ZFileChooser::FilterName(*type));
    Arguments arguments = {"kdialog", "--title", ZFileChooser::WindowTitle(request)};
    attach(arguments, request.window, {"--attach", ""});
    arguments.insert(arguments.end(), {saves ? "--getsavefilename" : "--getopenfilename",
                                       saves ? suggestedName(request) : ".", filter});
    return arguments;
}

std::unique_ptr<ZDesktopProgram> start(const ZFileRequest& request, int output)
{
    std::array<Arguments, 2> choosers{zenity(request), kdialog(request)};
    if (isKde())
        std::swap(choosers[0], choosers[1]);
    for (Arguments& arguments : choosers)
        if (auto program = std::make_unique<ZDesktopProgram>(std::move(arguments), output);
            program->HasStarted())
            return program;
    return nullptr;
}

/// Appends what can be read without waiting; false at the end of the file.
bool readAvailable(int descriptor, std::string& text)
{
    std::array<char, 4096> bytes;
    const ssize_t count = read(descriptor, bytes.data(), bytes.size());
    if (count > 0)
        text.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

/// Reads to the end of the file in a modal run; no value when the run is ended before.
std::optional<std::string> readModally(int descriptor, const void* owner)
{
    assert(descriptor >= 0 && ZInterfaceThread::IsCurrent());
    const ZInterfaceThread thread;
    ZModalRun run(thread.GetLoop(), owner);
    std::string text;
    bool isWhole = false;
    const ZEventLoop::SourceId source = thread.GetLoop().AddDescriptor(descriptor, [&] {
        isWhole = isWhole || !readAvailable(descriptor, text);
        if (isWhole)
            run.End();
    });
    run.Run();
    thread.GetLoop().Remove(source);
    return isWhole ? std::optional(text) : std::nullopt;
}

}  // namespace

std::optional<std::string> ZFileChooser::AskDesktop(const ZFileRequest& request)
{
    if (!hasDisplay()) {
        ZMessageBox::Show(ZMessageBox::kWarning, request.title,
                          "No file dialog can be shown: there is no display.");
        return std::nullopt;
    }
    Pipe output;
    auto program = output.IsOpen() ? start(request, output.Writer()) : nullptr;
    if (!program)
        return AskPlainly(request);
    output.CloseWriter();
    std::optional<std::string> path = readModally(output.Reader(), request.owner);
    // The program may still be open, when the owner ended the run, or take its time to exit.
    const ZInterfaceUnlock unlocked;
    program->Kill();
    program.reset();
    // Judges by the output, which is empty when the user cancels: the exit status is lost when the
    // host reaps the program.
    if (path && path->ends_with('\n'))
        path->pop_back();
    return path && !path->empty() ? path : std::nullopt;
}

}  // namespace orvane
